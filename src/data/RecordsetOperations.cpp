// SPDX-License-Identifier: Apache-2.0
#include "data/RecordsetOperations.h"

#include "support/Log.h"
#include "support/Seams.h"
#include "values/JetValues.h"

namespace clivara {

namespace {

constexpr int maximumAttempts = 20;
constexpr int maximumPause = 1000; // ms
// What the pauses take at most. A server that does not even answer, or only just before its limit, costs
// seconds at each attempt; that is no reason to keep the doctor waiting for longer.
constexpr qint64 longestPatience = (maximumAttempts - 1) * maximumPause;
constexpr qint64 slowAttempt = 1000; // ms

// 500 to 1000 ms; the random part keeps two workstations that collided from retrying in step.
int pauseFor(double draw)
{
    return std::min(maximumPause, static_cast<int>(jet::roundHalfToEven(draw * 500 + 500)));
}

// In a transaction that is gone nothing can be saved any more, what may have been saved must not be saved
// twice, and a file that was taken away does not come back.
bool isFinal(int errorNumber)
{
    return errorNumber == dao::TransactionError || errorNumber == dao::TransactionLost
           || errorNumber == dao::CommitInDoubt || errorNumber == dao::DatabaseMoved;
}

// Another workstation was writing, or had just written. Repeating the transaction reads what it has stored.
bool isAnothersDoing(int errorNumber)
{
    return errorNumber == dao::Locked || errorNumber == dao::RecordChanged
           || errorNumber == dao::RecordDeleted;
}

template <typename Operation>
qint16 flagOf(Operation operation)
{
    constexpr qint16 failed = -1;
    try {
        operation();
        return 0;
    } catch (const dao::Error &) {
        return failed; // the log has it
    }
}

} // namespace

bool Attempts::fail(int errorNumber)
{
    ++m_failures;
    m_longest = std::max(m_longest, m_time.elapsed() - m_begun);
    const bool isSlow = errorNumber == dao::ConnectionLost || m_longest > slowAttempt;
    return m_failures < maximumAttempts && !isFinal(errorNumber)
           && !(isSlow && m_time.elapsed() + maximumPause + m_longest > longestPatience);
}

void RecordsetOperations::pause(const QString &prefix)
{
    m_pauses.pause(pauseFor(m_pauses.draw()));
    m_log.write(prefix + QStringLiteral("TryAgain"));
}

template <typename Operation>
void RecordsetOperations::attempt(const QString &routine, const QString &source, bool once,
                                  Attempts &attempts, Operation operation)
{
    const QString prefix = routine + QStringLiteral(" - ");
    m_log.write(prefix + QStringLiteral("begin"));
    // The first one, what follows being often only its consequence; a server that is gone above all.
    std::optional<dao::Error> tellingError;
    for (;;) {
        attempts.begin();
        try {
            operation();
            m_log.write(prefix + QStringLiteral("0"));
            return;
        } catch (const dao::Error &error) {
            const bool isEnough = !attempts.fail(error.number()) || once;
            if (!tellingError || error.number() == dao::ConnectionLost)
                tellingError = error;
            m_log.write(QStringLiteral("%1iErr=%2 - Error %3 - ")
                            .arg(prefix)
                            .arg(attempts.failures())
                            .arg(error.number())
                        + error.text());
            m_log.write(prefix + source);
            if (isEnough)
                break;
        }
        pause(prefix);
    }
    m_log.write(prefix + QStringLiteral("Failed"));
    throw *tellingError;
}

template <typename Operation>
void RecordsetOperations::attempt(const QString &routine, const dao::Recordset &recordset,
                                  Operation operation)
{
    Attempts attempts;
    attempt(routine, recordset.Name(), recordset.isInTransaction(), attempts, operation);
}

void RecordsetOperations::addNew(dao::Recordset &recordset)
{
    attempt(QStringLiteral("Recordset_AddNew"), recordset, [&] { recordset.AddNew(); });
}

void RecordsetOperations::edit(dao::Recordset &recordset)
{
    attempt(QStringLiteral("Recordset_Edit"), recordset, [&] { recordset.Edit(); });
}

void RecordsetOperations::update(dao::Recordset &recordset)
{
    attempt(QStringLiteral("Recordset_Update"), recordset, [&] { recordset.Update(); });
}

qint16 RecordsetOperations::Recordset_AddNew(dao::Recordset &recordset)
{
    return flagOf([&] { addNew(recordset); });
}

qint16 RecordsetOperations::Recordset_Edit(dao::Recordset &recordset)
{
    return flagOf([&] { edit(recordset); });
}

qint16 RecordsetOperations::Recordset_Update(dao::Recordset &recordset)
{
    return flagOf([&] { update(recordset); });
}

void RecordsetOperations::Workspace_BeginTrans(dao::Workspace &workspace,
                                               std::optional<dao::Transaction> &transaction,
                                               Attempts &attempts)
{
    attempt(QStringLiteral("Workspace_BeginTrans"), QStringLiteral("Workspace"), false, attempts,
            [&] { transaction.emplace(workspace); });
}

bool RecordsetOperations::waitToTryAgain(const QString &subject, int errorNumber, Attempts &attempts)
{
    if (!isAnothersDoing(errorNumber) || !attempts.fail(errorNumber))
        return false;
    pause(subject + QStringLiteral(" - "));
    return true;
}

} // namespace clivara
