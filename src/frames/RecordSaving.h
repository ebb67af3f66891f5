// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "host/working_state/SharedWrites.h"

#include <QString>

namespace clivara {

struct WorkingState;

// A record that the doctor is writing in a form.
class WrittenRecord {
public:
    // True when what is typed may be written; otherwise the doctor has been told why not. May throw dao::Error.
    virtual bool mayWrite() = 0;
    virtual WriteResult write() = 0;
    // Another workstation has deleted the record, and the doctor wants what is typed as a new one.
    virtual void becomeNew() = 0;
    virtual QString vanishedQuestion() const = 0;

protected:
    ~WrittenRecord() = default;
};

// Saves the record and tells the doctor when that does not succeed; a record that was deleted meanwhile is offered to
// be saved as a new one. True when it is saved; otherwise the form keeps what is typed. Raises nothing; `form` is
// what the log calls it.
bool saveRecord(WorkingState &state, const QString &form, WrittenRecord &record);

} // namespace clivara
