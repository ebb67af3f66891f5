// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "data/engine/Dao.h"

#include <optional>
#include <utility>

namespace clivara {

class Log;
class Pauses;

// AddNew, Edit, Update and BeginTrans with retry: at most 20 attempts with a pause of 500 to 1000 ms between them, every
// step logged; a server that cannot be reached, or that is slow to refuse, is not tried for longer than the pauses may
// take, and what stands in a transaction that is gone, or may have been saved, is not tried again. The result is a
// failure flag: 0 done, -1 failed after the last attempt. No error is raised, and after a failed Update the edit buffer
// is still there. The calling thread does not respond during the pauses.
class RecordsetOperations {
public:
    RecordsetOperations(Log &log, Pauses &pauses)
        : m_log(log)
        , m_pauses(pauses)
    {
    }

    qint16 Recordset_AddNew(dao::Recordset &recordset);
    qint16 Recordset_Edit(dao::Recordset &recordset);
    qint16 Recordset_Update(dao::Recordset &recordset);

    // Begins a transaction with the same patience. Where rows are written together the waiting belongs here: once
    // the transaction has begun, no other workstation is in the way any more.
    qint16 Workspace_BeginTrans(dao::Workspace &workspace, std::optional<dao::Transaction> &transaction);

    // The number of the error that the last operation to fail began with, or ConnectionLost where that came later; 0 when
    // none has failed since the last call.
    int takeFailure() { return std::exchange(m_failure, 0); }

private:
    // `source` is what the log calls the thing that the operation is tried on.
    template <typename Operation>
    qint16 attempt(const QString &routine, const QString &source, Operation operation);

    Log &m_log;
    Pauses &m_pauses;
    int m_failure = 0;
};

} // namespace clivara
