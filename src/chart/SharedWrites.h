// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/RecordConflict.h"

#include <QString>
#include <functional>

namespace clivara {

struct WorkingState;

// What a save or a command came to.
struct WriteResult {
    enum Outcome {
        Done,
        TheirsKept, // the doctor gave up what was typed: the record is as another workstation has stored it
        Vanished, // another workstation deleted the row
        Changed, // another workstation changed what would be replaced
        Refused, // the stored data do not allow it; the form's own check, made again, tells why
        Failed // still not possible after the retries; the log tells why
    };
    Outcome outcome = Failed;
    int error = 0; // why it Failed: the error's number; 0 when it is not known

    WriteResult() = default;
    WriteResult(Outcome came, int number = 0)
        : outcome(came)
        , error(number)
    {
    }
    bool operator==(Outcome other) const { return outcome == other; }
};
// The same of one record, with what another workstation has stored when it is Changed.
template <typename Record>
struct SaveResult : WriteResult {
    Record stored;
};

// Errors of a write that was refused because no patient is identified, or because the patient was removed
// since the section was opened. No error of the engine has these numbers.
constexpr int noPatientFailure = -1;
constexpr int patientGoneFailure = -2;

// Does `write` within one transaction of the host's databases and commits it when the result is Done;
// otherwise nothing of it stays. Waits for other workstations before it begins, and where one is in the way
// later, rolls back, waits and does the whole again: `write` may run several times, and asks or tells the
// doctor nothing, since all other workstations wait for its end. Any other error ends it at once. Raises
// nothing: an error that `write` throws is Failed and leaves a line in the log that begins with `subject`.
// Nothing is written, and the result is Failed, unless the registry has the current patient, who is looked
// for inside the transaction: every save and command of the chart is about a patient.
WriteResult writeTogether(WorkingState &state, const QString &subject,
                          const std::function<WriteResult()> &write);

// Why an error of that number keeps the practice from being written, as the end of a sentence.
QString failureReason(int errorNumber);
// Tells the doctor that nothing was saved and why, by the error's number, and that the window keeps what was
// typed.
void warnNotSaved(WorkingState &state, int error);
// Tells the doctor what a deletion or another command on a row of a list came to; nothing when it is Done.
void tellCommand(WorkingState &state, const WriteResult &result, const QString &vanished,
                 const QString &failed);

// What the doctor is told of a record that is deleted from a list.
struct DeletionTexts {
    QString changed; // "La visita è stata salvata"
    // "La visita era già stata cancellata da un'altra postazione."; empty where the list tells enough
    QString vanished;
    QString failed; // "Non è stato possibile cancellare la visita"
};
// Deletes what the doctor has agreed to delete, and tells what came of it. A record that another workstation
// has saved since the list was read is deleted only when the doctor, told who and when, wants that as well;
// otherwise the result is Changed. A table without stamps is compared by `remove` alone: `seen` then stays as
// it is.
WriteResult deleteListed(WorkingState &state, LastWrite seen,
                         const std::function<WriteResult(LastWrite &seen)> &remove,
                         const DeletionTexts &texts);

} // namespace clivara
