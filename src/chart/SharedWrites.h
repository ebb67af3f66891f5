// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/RecordConflict.h"

#include <QString>
#include <functional>

namespace clivara {

struct WorkingState;

enum class WriteResult {
    Done,
    Vanished, // another workstation deleted the row
    Changed, // another workstation changed what would be replaced
    Refused, // the stored data do not allow it; the form's own check, made again, tells why
    Failed // still not possible after the retries; the log tells why
};

// Values of WorkingState::failure when a write was refused because no patient is identified, or because the
// patient was removed since the section was opened. No error of the engine has these numbers.
constexpr int noPatientFailure = -1;
constexpr int patientGoneFailure = -2;

// Does `write` within one transaction of the host's databases and commits it when the result is Done;
// otherwise nothing of it stays. Waits for other workstations before it begins, and where one is in the way
// later, rolls back, waits and does the whole again: `write` may run several times, and asks or tells the
// doctor nothing, since all other workstations wait for its end. Any other error ends it at once. Raises
// nothing: an error is Failed and leaves a line in the log that begins with `subject`. WorkingState::failure
// tells the error's number; 0 where `write` itself refused. Nothing is written, and the result is Failed,
// unless the registry has the current patient, who is looked for inside the transaction: every save and command
// of the chart is about a patient.
WriteResult writeTogether(WorkingState &state, const QString &subject,
                          const std::function<WriteResult()> &write);

// Why an error of that number keeps the practice from being written, as the end of a sentence.
QString failureReason(int errorNumber);
// Tells the doctor that nothing was saved and why, by WorkingState::failure, and that the window keeps what
// was typed.
void warnNotSaved(WorkingState &state);
// Tells the doctor what a deletion or another command on a row of a list came to; nothing when it is Done.
void tellCommand(WorkingState &state, WriteResult result, const QString &vanished, const QString &failed);

// The part of a deletion that every shared row has in common, within writeTogether: opens the one row of the
// query in the clinical database, makes the working doctor its owner, records the deletion under the table's
// code ("DP") and deletes the row. A row without record UID gets one, so that its deletion can be passed on.
// `seen` is the row's last write as the doctor knows it; when it was written again since then, the result is
// Changed and `seen` becomes what is stored. Throws dao::Error.
WriteResult deleteSharedRow(WorkingState &state, const QString &query, const QString &tableCode,
                            LastWrite &seen);

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
