// SPDX-License-Identifier: Apache-2.0
#include "data/engine/PostgresCommit.h"

#include "data/engine/Error.h"
#include "data/engine/PostgresConnection.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QThread>

namespace dao {
namespace {

// A server that was restarted is back within seconds.
constexpr qint64 longestDoubtMs = 10000;
constexpr int betweenAttemptsMs = 250;

} // namespace

PostgresCommit::PostgresCommit()
    : m_session(qint64(QRandomGenerator::system()->generate64() >> 1))
{
}

QString PostgresCommit::lock() const
{
    return QStringLiteral("pg_advisory_xact_lock(%1)").arg(m_session);
}

void PostgresCommit::commit(PostgresConnection &connection)
{
    ++m_number;
    // The rows of connections that are no more go with the first commit of another one.
    const QString purge =
        m_number == 1 ? QStringLiteral("DELETE FROM jet.commits WHERE at < now() - interval '1 day'; ")
                      : QString();
    try {
        connection.commit(
            purge
            + QStringLiteral("INSERT INTO jet.commits VALUES (%1, %2, now()) ON CONFLICT (session) "
                             "DO UPDATE SET number = excluded.number, at = excluded.at")
                  .arg(m_session)
                  .arg(m_number));
    } catch (const Error &error) {
        if (error.number() != ConnectionLost || !isDone(connection))
            throw;
    }
}

bool PostgresCommit::isDone(PostgresConnection &connection) const
{
    QElapsedTimer doubt;
    doubt.start();
    for (;;) {
        try {
            // The lock is free when the server has done with the transaction, one way or the other.
            PostgresCursor row(
                connection.run(QStringLiteral("SELECT %1; SELECT number FROM jet.commits WHERE session = %2")
                                   .arg(lock())
                                   .arg(m_session)));
            return row.next() && row.value(0).toLongLong() == m_number;
        } catch (const Error &error) {
            if (doubt.hasExpired(longestDoubtMs))
                throw Error(CommitInDoubt,
                            QStringLiteral("Il collegamento con il server si è interrotto durante il "
                                           "salvataggio: non si sa se è avvenuto (%1)")
                                .arg(error.text()));
        }
        QThread::msleep(betweenAttemptsMs);
    }
}

} // namespace dao
