// SPDX-License-Identifier: Apache-2.0
#include "data/NextKey.h"

#include "dao/Dao.h"

namespace clivara {

qint32 nextKey(dao::Database &database, const QString &table, const QString &field)
{
    const auto highest = database.OpenRecordset(
        QStringLiteral("select max(%1) as highest from %2").arg(field, table), dao::RecordsetType::Snapshot);
    return highest->Eof() ? 1 : qint32(highest->Fields(QStringLiteral("highest")).number()) + 1;
}

} // namespace clivara
