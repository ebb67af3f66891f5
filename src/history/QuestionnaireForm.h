// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/RecordSaving.h"
#include "chart/SectionForm.h"
#include "history/GeneralInfoRecords.h"

class QLabel;

namespace clivara {

struct WorkingState;

// What the questionnaires have in common: their answers are one code string in a row of the patient, and the string
// that was loaded last is one for all of them. A row without a string leaves what was
// loaded before, be it another form's or another patient's; the form then says so.
class QuestionnaireForm : public SectionForm, protected WrittenRecord {
    Q_OBJECT

protected:
    // `loadedCode` is shared by all questionnaires.
    QuestionnaireForm(const QString &name, WorkingState &state, std::shared_ptr<QString> loadedCode,
                      QuestionnaireKind kind);

    // Where the notices stand: a label that is hidden while there are none.
    void setNotices(QLabel *label);
    void addNotice(const QString &text);

    enum class Loaded {
        NoRow, // the loaded code is as it was
        Blank, // there is nothing to show
        Code // the loaded code is to be shown
    };
    // Reads the patient's row into the loaded code, and clears the notices. `isIntact` tells a code that the
    // doctor can trust. Throws dao::Error.
    Loaded loadCode(bool (*isIntact)(const QString &code));

    // The answers that loadCode() gave to show are not all this patient's: they come from another string, or
    // are pairs that cannot be read.
    bool isForeign() const { return m_isForeign; }

    // What counts is what the strings say without the blanks around them.
    bool isChangedCode(const QString &code) const;

    // Runs `write` in a transaction.
    WriteResult writeAll(const std::function<WriteResult()> &write);
    bool mayWrite() override { return true; }

    // Looks at the row again, within writeAll: true when saving this code would replace one that was stored since the
    // form was opened. m_elsewhere is then what is stored. Throws dao::Error.
    bool isCodeReplaced(const QString &code);

    const std::shared_ptr<QString> m_loadedCode;
    const QuestionnaireKind m_kind;
    StoredCode m_read; // the row as it was read
    StoredCode m_elsewhere; // the row as another workstation has stored it, when a save found that

private:
    QLabel *m_notices = nullptr;
    bool m_isForeign = false;
};

} // namespace clivara
