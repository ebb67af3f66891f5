// SPDX-License-Identifier: Apache-2.0
#include "data/RecordsetOperations.h"

#include "support/Log.h"
#include "support/Seams.h"
#include "values/JetValues.h"

#include <QElapsedTimer>

namespace clivara {

namespace {

constexpr int maximumAttempts = 20;
constexpr int maximumPause = 1000; // ms
// What the pauses take at most. A server that does not even answer, or only just before its limit, costs seconds at each
// attempt; that is no reason to keep the doctor waiting for longer.
constexpr qint64 longestPatience = (maximumAttempts - 1) * maximumPause;
constexpr qint64 slowAttempt = 1000; // ms

// 500 to 1000 ms; the random part keeps two workstations that collided from retrying in step.
int pauseFor(double draw)
{
    return std::min(maximumPause, static_cast<int>(jet::roundHalfToEven(draw * 500 + 500)));
}

// In a transaction that is gone nothing can be saved any more, and what may have been saved must not be saved twice.
bool isFinal(const dao::Error &error)
{
    return error.number() == dao::TransactionError || error.number() == dao::TransactionLost
           || error.number() == dao::CommitInDoubt;
}

} // namespace

template <typename Operation>
qint16 RecordsetOperations::attempt(const QString &routine, const QString &source, Operation operation)
{
    const QString prefix = routine + QStringLiteral(" - ");
    m_log.write(prefix + QStringLiteral("begin"));
    // The first one, what follows being often only its consequence; a server that is gone above all.
    int tellingError = 0;
    qint64 longestAttempt = 0;
    QElapsedTimer time;
    time.start();
    for (int failures = 0;;) {
        const qint64 before = time.elapsed();
        try {
            operation();
            m_log.write(prefix + QStringLiteral("0"));
            return 0;
        } catch (const dao::Error &error) {
            if (failures++ == 0 || error.number() == dao::ConnectionLost)
                tellingError = error.number();
            m_log.write(
                QStringLiteral("%1iErr=%2 - Error %3 - ").arg(prefix).arg(failures).arg(error.number())
                + error.text());
            m_log.write(prefix + source);
            longestAttempt = std::max(longestAttempt, time.elapsed() - before);
            const bool isSlow = error.number() == dao::ConnectionLost || longestAttempt > slowAttempt;
            if (failures == maximumAttempts || isFinal(error)
                || (isSlow && time.elapsed() + maximumPause + longestAttempt > longestPatience))
                break;
        }
        m_pauses.pause(pauseFor(m_pauses.draw()));
        m_log.write(prefix + QStringLiteral("TryAgain"));
    }
    m_log.write(prefix + QStringLiteral("Failed"));
    m_failure = tellingError;
    return -1;
}

qint16 RecordsetOperations::Recordset_AddNew(dao::Recordset &recordset)
{
    return attempt(QStringLiteral("Recordset_AddNew"), recordset.Name(), [&] { recordset.AddNew(); });
}

qint16 RecordsetOperations::Recordset_Edit(dao::Recordset &recordset)
{
    return attempt(QStringLiteral("Recordset_Edit"), recordset.Name(), [&] { recordset.Edit(); });
}

qint16 RecordsetOperations::Recordset_Update(dao::Recordset &recordset)
{
    return attempt(QStringLiteral("Recordset_Update"), recordset.Name(), [&] { recordset.Update(); });
}

qint16 RecordsetOperations::Workspace_BeginTrans(dao::Workspace &workspace,
                                                 std::optional<dao::Transaction> &transaction)
{
    return attempt(QStringLiteral("Workspace_BeginTrans"), QStringLiteral("Workspace"),
                   [&] { transaction.emplace(workspace); });
}

} // namespace clivara
