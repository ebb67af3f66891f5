// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "general_info/GeneralInfoRecords.h"
#include "support/ui/ChartForm.h"

class QLabel;

namespace clivara {

struct WorkingState;

// What the questionnaires have in common: their answers are one code string in a row of the patient, and the string
// that was loaded last is one for all of them (WorkingState::loadedCode). A row without a string leaves what was
// loaded before, be it another form's or another patient's; the form then says so.
class QuestionnaireForm : public ChartForm {
    Q_OBJECT

protected:
    QuestionnaireForm(const QString &name, WorkingState &state, QuestionnaireKind kind);

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

    // What counts is what the strings say without the blanks around them.
    bool isChangedCode(const QString &code) const;

    // Runs `write` with all that belongs to a save; false when nothing was saved.
    bool save(const std::function<WriteResult()> &write);

    WorkingState &m_state;
    const QuestionnaireKind m_kind;

private:
    QLabel *m_notices = nullptr;
};

// The warning after a save that failed, while the window keeps what was typed.
QString saveFailedText();

} // namespace clivara
