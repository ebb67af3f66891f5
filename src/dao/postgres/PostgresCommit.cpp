// SPDX-License-Identifier: Apache-2.0
#include "dao/postgres/PostgresCommit.h"

#include "dao/postgres/PostgresCursor.h"
#include "jetsql/Error.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QThread>
#include <algorithm>

namespace dao {
namespace {

// A server that was restarted is back within seconds. Where the loss itself was noticed late, only so much is
// left that nobody waits longer than for the retries of a save.
constexpr qint64 longestDoubtMs = 10000;
constexpr qint64 longestCommitMs = 19000;
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

void PostgresCommit::commit(PostgresChannel &channel)
{
    ++m_number;
    const QDeadlineTimer end(longestCommitMs);
    // The rows of connections that are no more go with the first commit of another one.
    const QString purge =
        m_number == 1 ? QStringLiteral("DELETE FROM jet.commits WHERE at < now() - interval '1 day'; ")
                      : QString();
    try {
        channel.commit(
            purge
            + QStringLiteral("INSERT INTO jet.commits VALUES (%1, %2, now()) ON CONFLICT (session) "
                             "DO UPDATE SET number = excluded.number, at = excluded.at")
                  .arg(m_session)
                  .arg(m_number));
    } catch (const Error &error) {
        if (error.number() != ConnectionLost || !isDone(channel, end))
            throw;
    }
}

bool PostgresCommit::isDone(PostgresChannel &channel, const QDeadlineTimer &end) const
{
    const qint64 limit = std::min(longestDoubtMs, end.remainingTime());
    QElapsedTimer doubt;
    doubt.start();
    for (qint64 longestAttempt = 0;;) {
        const qint64 before = doubt.elapsed();
        try {
            // The lock is free when the server has done with the transaction, one way or the other.
            PostgresCursor row(
                channel.run(QStringLiteral("SELECT %1; SELECT number FROM jet.commits WHERE session = %2")
                                .arg(lock())
                                .arg(m_session)));
            return row.next() && row.value(0).toLongLong() == m_number;
        } catch (const Error &error) {
            longestAttempt = std::max(longestAttempt, doubt.elapsed() - before);
            if (doubt.elapsed() + betweenAttemptsMs + longestAttempt > limit)
                throw Error(CommitInDoubt,
                            QStringLiteral("Il collegamento con il server si è interrotto durante il "
                                           "salvataggio: non si sa se è avvenuto (%1)")
                                .arg(error.text()));
        }
        QThread::msleep(betweenAttemptsMs);
    }
}

} // namespace dao
