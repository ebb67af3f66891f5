// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/RecordConflict.h"
#include "chart/SharedWrites.h"

#include <QStringList>

namespace clivara {

struct WorkingState;

// A record that the doctor is writing in a form.
class WrittenRecord {
public:
    // True when what is typed may be written; otherwise the doctor has been told why not. May throw
    // dao::Error.
    virtual bool mayWrite() = 0;
    virtual WriteResult write() = 0;
    // Another workstation has deleted the record, and the doctor wants what is typed as a new one. Only for
    // records whose write() may be Vanished.
    virtual void becomeNew() { }
    virtual QString vanishedQuestion() const { return {}; }
    // After a write that was Changed: both versions, for the doctor to choose. May throw dao::Error.
    virtual RecordConflict conflict() const = 0;
    // The doctor has seen both and wants what is typed: from now on it may replace what was stored
    // elsewhere. Where nothing was changed here, what was stored elsewhere is taken. May throw dao::Error.
    virtual void keepMine() = 0;
    // Nothing was written, for that error.
    virtual void tellNotSaved(WorkingState &state, int error) { warnNotSaved(state, error); }

protected:
    ~WrittenRecord() = default;
};

// The conflict of a record whose values the doctor knows by these captions; `shown` is each of them as it
// was read, as it is in the window and as it is stored.
struct ShownVersions {
    QStringList read, mine, stored;
};
RecordConflict conflictOf(const QString &event, const QStringList &captions, const ShownVersions &shown,
                          const LastWrite &before, const LastWrite &there);

// Saves the record and tells the doctor when that does not succeed. A record that was deleted meanwhile is
// offered to be saved as a new one; of one that was changed meanwhile the doctor sees both versions and
// chooses. Unless it is Done or TheirsKept the doctor has been told, and the form keeps what is typed.
// Raises nothing; `form` is what the log calls it.
WriteResult saveRecord(WorkingState &state, const QString &form, WrittenRecord &record);

} // namespace clivara
