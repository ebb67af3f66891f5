// SPDX-License-Identifier: Apache-2.0
#include "host/working_state/SharedWrites.h"

#include "host/working_state/WorkingState.h"

namespace clivara {

namespace {

// A row that is stored for nobody is in no chart, and in the chart of whoever gets that code one day.
bool isForNobody(WorkingState &state, const QString &subject)
{
    if (state.header.identified && state.header.patientCode > 0)
        return false;
    state.failure = noPatientFailure;
    state.log.write(subject
                    + QStringLiteral(" - nessun paziente identificato (codice %1), niente è stato scritto")
                          .arg(state.header.patientCode));
    return true;
}

QString commandAdvice(int errorNumber)
{
    switch (errorNumber) {
    case dao::CommitInDoubt:
        return QStringLiteral("Controllare prima di riprovare.");
    case noPatientFailure:
        return QStringLiteral("Nessun dato è stato modificato: scegliere prima un paziente.");
    default:
        return QStringLiteral("Nessun dato è stato modificato: riprovare tra poco.");
    }
}

} // namespace

WriteResult writeTogether(WorkingState &state, const QString &subject,
                          const std::function<WriteResult()> &write)
{
    state.failure = 0;
    state.operations.takeFailure();
    if (isForNobody(state, subject))
        return WriteResult::Failed;
    try {
        if (!state.environment || !state.environment->workspace)
            throw dao::Error(dao::InvalidOperation, QStringLiteral("Archivio dell'ospite non disponibile"));
        std::optional<dao::Transaction> transaction;
        const bool begun =
            state.operations.Workspace_BeginTrans(*state.environment->workspace, transaction) == 0;
        const WriteResult result = begun ? write() : WriteResult::Failed;
        if (result == WriteResult::Done)
            transaction->commit();
        state.failure = state.operations.takeFailure();
        if (result == WriteResult::Done)
            state.unreachableTold = false;
        return result;
    } catch (const dao::Error &error) {
        const int first = state.operations.takeFailure();
        state.failure = first != 0 ? first : error.number();
        state.log.write(QStringLiteral("%1 - Error %2 - ").arg(subject).arg(error.number()) + error.text());
        return WriteResult::Failed;
    }
}

QString failureReason(int errorNumber)
{
    switch (errorNumber) {
    case dao::ConnectionLost:
    case dao::TransactionLost:
        return QStringLiteral("il server dell'archivio non è raggiungibile");
    case dao::CommitInDoubt:
        return QStringLiteral("il server dell'archivio si è interrotto proprio in quel momento e non si sa "
                              "che cosa abbia salvato");
    case dao::Locked:
        return QStringLiteral("l'archivio è occupato da un'altra postazione");
    case noPatientFailure:
        return QStringLiteral("non c'è un paziente identificato");
    default:
        return QStringLiteral("l'archivio è occupato o non si può scrivere");
    }
}

void warnNotSaved(WorkingState &state)
{
    if (state.failure == dao::CommitInDoubt) {
        state.prompts.warn(QStringLiteral("Salvataggio incerto: %1.\n"
                                          "Quanto scritto resta nella finestra: prima di salvarlo di nuovo, "
                                          "controllare se c'è già.")
                               .arg(failureReason(state.failure)));
        return;
    }
    state.prompts.warn(QStringLiteral("Salvataggio non riuscito: %1.\n"
                                      "Niente è stato salvato. Quanto scritto resta nella finestra: %2.")
                           .arg(failureReason(state.failure),
                                state.failure == noPatientFailure ? QStringLiteral(
                                    "per salvarlo, riaprire la sezione dopo aver scelto il paziente")
                                                                  : QStringLiteral("riprovare tra poco")));
}

void tellCommand(WorkingState &state, WriteResult result, const QString &vanished, const QString &failed)
{
    if (result == WriteResult::Vanished) {
        if (!vanished.isEmpty())
            state.prompts.warn(vanished);
    } else if (result != WriteResult::Done)
        state.prompts.warn(QStringLiteral("%1: %2.\n%3")
                               .arg(failed, failureReason(state.failure), commandAdvice(state.failure)));
}

WriteResult deleteSharedRow(WorkingState &state, const QString &query, const QString &tableCode,
                            LastWrite &seen)
{
    const auto rows = state.clinical().OpenRecordset(query);
    if (rows->Eof())
        return WriteResult::Vanished;
    if (const LastWrite stored = lastWrite(*rows); stored != seen) {
        seen = stored;
        return WriteResult::Changed;
    }
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

WriteResult deleteListed(WorkingState &state, LastWrite seen,
                         const std::function<WriteResult(LastWrite &seen)> &remove,
                         const DeletionTexts &texts)
{
    RecordConflict conflict;
    conflict.event = texts.changed;
    for (;;) {
        conflict.before = seen;
        const WriteResult result = remove(seen);
        if (result != WriteResult::Changed) {
            tellCommand(state, result, texts.vanished, texts.failed);
            return result;
        }
        conflict.there = seen;
        if (state.prompts.ask(
                {QStringLiteral("Attenzione!"),
                 conflictSentence(state, conflict)
                     + QStringLiteral("\nL'elenco mostra ancora com'era prima. Eliminare lo stesso?"),
                 PromptIcon::Warning,
                 {PromptButton::Yes, PromptButton::No},
                 PromptButton::No})
            != PromptButton::Yes)
            return result;
    }
}

} // namespace clivara
