// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/RecordSaving.h"
#include "chart/SectionForm.h"
#include "controls/DateFieldGuard.h"

#include <QDate>

class QAbstractButton;

namespace clivara {

class MaskedDateEdit;
struct WorkingState;

// The frame of the dialogs in which the doctor writes one record (a problem, a visit, a stay): a button
// that saves and closes, one that closes without saving, Ctrl+S and Ctrl+Enter, and what happens when a
// save does not succeed. Until a save has succeeded the dialog stays open with everything that was typed.
// Enter leads from field to field; in a long text it is a new line.
class RecordDialog : public SectionForm {
    Q_OBJECT

protected:
    // The record is what the derived dialog writes.
    RecordDialog(const QString &name, WorkingState &state, WrittenRecord &record);

    // The buttons of the .ui file, once they are there.
    void setButtons(QAbstractButton *save, QAbstractButton *exit);
    // Makes the field one for "dd-mm-yyyy" whose missing date is shown quietly.
    void addDate(MaskedDateEdit *edit);
    DateFieldGuard &dates() { return m_dates; }

    // After a save, before the dialog closes.
    virtual void written() { }

    // Tells that what the dialog is opened for is no longer there and throws, so that it does not open.
    [[noreturn]] void refuseToOpen(const QString &text);

    void keyPressEvent(QKeyEvent *event) override;

private:
    void save();

    WrittenRecord &m_record;
    DateFieldGuard m_dates;
    QAbstractButton *m_save = nullptr;
    QAbstractButton *m_exit = nullptr;
    bool m_saving = false;
};

// Shows a stored date in a date field. A date that the record does not have is shown as
// "01-01-1980", greyed, and stays a missing one unless the doctor edits it.
void showStoredDate(MaskedDateEdit *edit, QDate stored);
// What the field says: the stored date while it was not edited, else the typed one; null when that is none.
QDate enteredDate(const MaskedDateEdit *edit, QDate stored);
// True while the field holds something that cannot be a date.
bool holdsNoDate(const MaskedDateEdit *edit);

} // namespace clivara
