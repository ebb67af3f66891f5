// SPDX-License-Identifier: Apache-2.0
#include "chart/SharedWrites.h"

#include "chart/WorkingState.h"

namespace clivara {

namespace {

// A row without a patient appears in no chart, and later in that of the patient who is given its code.
WriteResult refuseWithoutPatient(WorkingState &state, const QString &subject, int failure)
{
    state.log.write(QStringLiteral("%1 - %2 (codice %3), niente è stato scritto")
                        .arg(subject, failureReason(failure))
                        .arg(state.header.patientCode));
    return {WriteResult::Failed, failure};
}

// Asked again inside the transaction: the patient may have been removed since the section was opened, and the header
// may be unidentified only because the registry could not be read then.
bool isPatientInRegistry(const WorkingState &state)
{
    const auto rows = state.clinical().OpenRecordset(
        {QStringLiteral("select cod_paz from archivio where (cod_paz = [patient])"),
         {{"patient", state.header.patientCode}}},
        dao::RecordsetType::Snapshot);
    return !rows->Eof();
}

// One attempt, the waiting for the transaction apart.
WriteResult writeOnce(WorkingState &state, const QString &subject, const std::function<WriteResult()> &write,
                      Attempts &attempts)
{
    try {
        if (!state.environment || !state.environment->workspace)
            throw dao::Error(dao::InvalidOperation, QStringLiteral("Archivio dell'ospite non disponibile"));
        std::optional<dao::Transaction> transaction;
        state.operations.Workspace_BeginTrans(*state.environment->workspace, transaction, attempts);
        if (!isPatientInRegistry(state))
            return refuseWithoutPatient(state, subject,
                                        state.header.identified ? patientGoneFailure : noPatientFailure);
        const WriteResult result = write();
        if (result == WriteResult::Done)
            transaction->commit();
        return result;
    } catch (const dao::Error &error) {
        state.log.write(QStringLiteral("%1 - Error %2 - ").arg(subject).arg(error.number()) + error.text());
        return {WriteResult::Failed, error.number()};
    }
}

const auto laterAdvice = QStringLiteral("riprovare tra poco");

// What the doctor can do about it.
QString adviceFor(int errorNumber)
{
    switch (errorNumber) {
    case dao::CommitInDoubt:
        return QStringLiteral("prima di salvarlo di nuovo, controllare se c'è già");
    case dao::DuplicateKey:
    case dao::FieldTooSmall:
    case dao::RecordTooLarge:
    case dao::FieldRequired:
    case dao::Overflow:
    case dao::TypeMismatch:
    case dao::ConversionError:
        return QStringLiteral("correggerlo e salvare di nuovo");
    case dao::RecordDeleted:
    case dao::RecordChanged:
        return QStringLiteral("riaprire la finestra per vedere come sono i dati ora");
    case dao::DatabaseMoved:
        return QStringLiteral("annotarlo, chiudere il programma e riaprire l'archivio");
    case dao::ReadOnly:
    case dao::NoPermission:
    case dao::DiskFull:
    case dao::DiskError:
    case dao::Corrupt:
    case dao::NotADatabase:
        return QStringLiteral("finché la causa non è rimossa non si può salvare niente");
    case noPatientFailure:
        return QStringLiteral("per salvarlo, riaprire la sezione dopo aver scelto il paziente");
    case patientGoneFailure:
        return QStringLiteral("annotarlo e cercare di nuovo il paziente");
    default:
        return laterAdvice;
    }
}

// What the doctor can do when it was a command on a row of a list.
QString commandAdvice(int errorNumber)
{
    if (errorNumber == dao::CommitInDoubt)
        return QStringLiteral("Controllare prima di riprovare.");
    const auto unchanged = QStringLiteral("Nessun dato è stato modificato");
    if (errorNumber == noPatientFailure)
        return unchanged + QStringLiteral(": scegliere prima un paziente.");
    if (errorNumber == dao::DatabaseMoved)
        return unchanged + QStringLiteral(": chiudere il programma e riaprire l'archivio.");
    const bool later = adviceFor(errorNumber) == laterAdvice;
    return unchanged + (later ? QStringLiteral(": ") + laterAdvice : QString()) + u'.';
}

} // namespace

WriteResult writeTogether(WorkingState &state, const QString &subject,
                          const std::function<WriteResult()> &write)
{
    if (state.header.patientCode <= 0)
        return refuseWithoutPatient(state, subject, noPatientFailure);
    Attempts attempts;
    WriteResult result;
    do
        result = writeOnce(state, subject, write, attempts);
    while (result == WriteResult::Failed && state.operations.waitToTryAgain(subject, result.error, attempts));
    if (result == WriteResult::Done)
        state.unreachableTold = false;
    return result;
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
    case patientGoneFailure:
        return QStringLiteral("il paziente non è più in archivio");
    case dao::DuplicateKey:
        return QStringLiteral("esiste già una registrazione con gli stessi dati di riconoscimento");
    case dao::FieldTooSmall:
    case dao::RecordTooLarge:
        return QStringLiteral("un testo è più lungo di quanto l'archivio può contenere");
    case dao::FieldRequired:
        return QStringLiteral("manca un dato che l'archivio richiede");
    case dao::Overflow:
    case dao::TypeMismatch:
    case dao::ConversionError:
        return QStringLiteral("un valore non è di quelli che l'archivio può contenere");
    case dao::RecordDeleted:
        return QStringLiteral("la registrazione è stata cancellata da un'altra postazione");
    case dao::RecordChanged:
        return QStringLiteral("la registrazione è stata cambiata da un'altra postazione");
    case dao::DatabaseMoved:
        return QStringLiteral("l'archivio è stato spostato, sostituito o cancellato mentre era aperto");
    case dao::ReadOnly:
    case dao::NoPermission:
        return QStringLiteral("manca il permesso di scrivere nell'archivio");
    case dao::DiskFull:
        return QStringLiteral("il disco è pieno");
    case dao::DiskError:
        return QStringLiteral("il disco non funziona correttamente");
    case dao::Corrupt:
    case dao::NotADatabase:
        return QStringLiteral("l'archivio è danneggiato");
    case 0: // what failed has told only the log
        return QStringLiteral("l'archivio non si può scrivere");
    default:
        return QStringLiteral("l'archivio non si può scrivere (errore %1)").arg(errorNumber);
    }
}

void warnNotSaved(WorkingState &state, int error)
{
    const auto text =
        error == dao::CommitInDoubt
            ? QStringLiteral("Salvataggio incerto: %1.\nQuanto scritto resta nella finestra: %2.")
            : QStringLiteral("Salvataggio non riuscito: %1.\nNiente è stato salvato. Quanto scritto "
                             "resta nella finestra: %2.");
    state.prompts.warn(text.arg(failureReason(error), adviceFor(error)));
}

void tellCommand(WorkingState &state, const WriteResult &result, const QString &vanished,
                 const QString &failed)
{
    if (result == WriteResult::Vanished) {
        if (!vanished.isEmpty())
            state.prompts.warn(vanished);
    } else if (result != WriteResult::Done)
        state.prompts.warn(QStringLiteral("%1: %2.\n%3")
                               .arg(failed, failureReason(result.error), commandAdvice(result.error)));
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
