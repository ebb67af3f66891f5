// SPDX-License-Identifier: Apache-2.0
#include "dao/postgres/PostgresExclusiveUse.h"

#include "dao/postgres/PostgresCursor.h"
#include "dao/postgres/PostgresOpening.h"

namespace dao {
namespace {

// A lock of the whole practice that everybody who has it open shares, by a number that nothing else uses
// there.
const QString useLock = QStringLiteral("1869769079, 2");

} // namespace

PostgresExclusiveUse::PostgresExclusiveUse(const QString &address)
{
    const PostgresAddress parsed = PostgresAddress::parse(address);
    m_channel = openPostgres(parsed, {}, parsed.database);
    PostgresCursor taken(m_channel->run(QStringLiteral("SELECT pg_try_advisory_lock(%1)").arg(useLock)));
    if (!taken.next() || !taken.value(0).toBool())
        throw Error(Locked,
                    QStringLiteral("Il database '%1' è in uso da un altro utente").arg(parsed.name()));
}

QString PostgresExclusiveUse::sharing()
{
    return QStringLiteral("SELECT pg_advisory_lock_shared(%1)").arg(useLock);
}

} // namespace dao
