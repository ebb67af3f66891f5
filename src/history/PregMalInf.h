// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "history/InfectionCode.h"
#include "history/QuestionnaireForm.h"
#include "support/Prompts.h"

#include <array>
#include <memory>

class QBoxLayout;
class QCheckBox;
class QLineEdit;

namespace Ui {
class PregMalInf;
}

namespace clivara {

// The infectious diseases that the patient has had. Closing saves without asking when something has changed,
// which without a stored row is always so; answers that may not be this patient's are asked about. The box of
// disease i is `SSCheck1_i`, the note of disease 15 + k `Text1_k`.
class PregMalInf final : public QuestionnaireForm {
    Q_OBJECT

public:
    PregMalInf(WorkingState &state, std::shared_ptr<QString> loadedCode);
    ~PregMalInf() override;

protected:
    void load() override;
    bool queryUnload() override;
    WriteResult write() override;
    RecordConflict conflict() const override;
    void keepMine() override;
    void tellNotSaved(WorkingState &state, int error) override;

private:
    void addBox(QBoxLayout *layout, const InfectionFrame::Item &item);
    void showAnswers(const InfectionAnswers &answers);
    InfectionAnswers answers() const;
    void setNoteReady(std::size_t note, bool ready);
    void askForNote(std::size_t note);
    PromptButton askForeign(bool isTouched);

    std::unique_ptr<Ui::PregMalInf> m_ui;
    std::array<QCheckBox *, std::size_t(infectionCount)> m_boxes{};
    std::array<QLineEdit *, std::size_t(notedInfections)> m_notes{};
    bool m_hasRow = false;
    QString m_shownCode; // what the form says as long as nothing is changed
    bool m_closesUnsaved = false; // what the doctor answered after a save that failed
    // Notes that were stored beside diseases the patient has not had: they show when the box is ticked.
    std::array<QString, std::size_t(notedInfections)> m_hiddenNotes;
};

} // namespace clivara
