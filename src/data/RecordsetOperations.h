// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/Dao.h"

#include <QElapsedTimer>
#include <optional>

namespace clivara {

class Log;
class Pauses;

// Counts the attempts at an operation and the time that they take. A write that is repeated as a whole uses
// one object for all its steps.
class Attempts {
public:
    Attempts() { m_time.start(); }
    int failures() const { return m_failures; }
    // Counts a failure. False when the operation is not to be tried again: attempts or time are used up, or
    // another attempt cannot mend the error.
    bool fail(int errorNumber);
    // Another attempt begins.
    void begin() { m_begun = m_time.elapsed(); }

private:
    QElapsedTimer m_time;
    qint64 m_begun = 0;
    qint64 m_longest = 0; // attempt, ms
    int m_failures = 0;
};

// AddNew, Edit, Update and BeginTrans with retry: at most 20 attempts with a pause of 500 to 1000 ms
// between them, every step logged; a server that cannot be reached, or that is slow to refuse, is not tried
// for longer than the pauses may take, and what stands in a transaction that is gone, or may have been
// saved, is not tried again. What fails for good throws the dao::Error that it first failed with, or
// ConnectionLost where that came later; after a failed Update the edit buffer is still there. The calling
// thread does not respond during the pauses.
//
// Inside a transaction there is one attempt only, since all other workstations wait for its end. Whoever
// began it rolls it back and repeats the whole (see waitToTryAgain).
class RecordsetOperations {
public:
    RecordsetOperations(Log &log, Pauses &pauses)
        : m_log(log)
        , m_pauses(pauses)
    {
    }

    // 0 when it is done, -1 when it failed after the last attempt; raises nothing.
    qint16 Recordset_AddNew(dao::Recordset &recordset);
    qint16 Recordset_Edit(dao::Recordset &recordset);
    qint16 Recordset_Update(dao::Recordset &recordset);

    // The same operations for code that needs the error.
    void addNew(dao::Recordset &recordset);
    void edit(dao::Recordset &recordset);
    void update(dao::Recordset &recordset);

    // Begins a transaction with the same patience. Where rows are written together the waiting belongs
    // here: once the transaction has begun, no other workstation is in the way any more.
    void Workspace_BeginTrans(dao::Workspace &workspace, std::optional<dao::Transaction> &transaction,
                              Attempts &attempts);

    // To be called after a transaction failed with that error and was rolled back. When another workstation
    // was in the way and attempts are left, pauses as between two attempts and returns true; otherwise false
    // at once.
    bool waitToTryAgain(const QString &subject, int errorNumber, Attempts &attempts);

private:
    // `source` is what the log calls the thing that the operation is tried on.
    template <typename Operation>
    void attempt(const QString &routine, const QString &source, bool once, Attempts &attempts,
                 Operation operation);
    template <typename Operation>
    void attempt(const QString &routine, const dao::Recordset &recordset, Operation operation);
    void pause(const QString &prefix);

    Log &m_log;
    Pauses &m_pauses;
};

} // namespace clivara
