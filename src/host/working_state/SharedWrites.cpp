// SPDX-License-Identifier: Apache-2.0
#include "host/working_state/SharedWrites.h"

#include "host/working_state/WorkingState.h"

namespace clivara {

WriteResult writeTogether(WorkingState &state, const QString &subject,
                          const std::function<WriteResult()> &write)
{
    try {
        if (!state.environment || !state.environment->workspace)
            throw dao::Error(dao::InvalidOperation, QStringLiteral("Archivio dell'ospite non disponibile"));
        std::optional<dao::Transaction> transaction;
        if (state.operations.Workspace_BeginTrans(*state.environment->workspace, transaction) != 0)
            return WriteResult::Failed;
        const WriteResult result = write();
        if (result == WriteResult::Done)
            transaction->commit();
        return result;
    } catch (const dao::Error &error) {
        state.log.write(QStringLiteral("%1 - Error %2 - ").arg(subject).arg(error.number()) + error.text());
        return WriteResult::Failed;
    }
}

WriteResult deleteSharedRow(WorkingState &state, const QString &query, const QString &tableCode)
{
    const auto rows = state.clinical().OpenRecordset(query);
    if (rows->Eof())
        return WriteResult::Vanished;
    if (state.operations.Recordset_Edit(*rows) != 0)
        return WriteResult::Failed;
    SharedRows shared = state.sharedRows();
    const QString uid = shared.ensureRecordUid(*rows);
    rows->Fields(QStringLiteral("sOwnerUid")).setValue(state.uidAuthor);
    if (state.operations.Recordset_Update(*rows) != 0)
        return WriteResult::Failed;
    if (shared.recordDeletion(state.clinical(), uid, tableCode, state.uidAuthor).isEmpty())
        return WriteResult::Failed;
    rows->Delete();
    return WriteResult::Done;
}

QDateTime modifiedDate(dao::Recordset &row)
{
    return row.Fields(QStringLiteral("dLastModifiedDate")).date();
}

} // namespace clivara
