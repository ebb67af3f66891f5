// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "inputs/PatientInputForm.h"

namespace Ui {
class CalculatorForm;
}

namespace clivara {

// The frame that the calculators share: the patient's inputs, two result lines and the buttons. On closing it asks
// the host to refresh its diary and hands back {"valutazione", value}, 0 when nothing was computed since the form
// was opened.
class CalculatorForm : public PatientInputForm {
    Q_OBJECT

public:
    ~CalculatorForm() override;

protected:
    CalculatorForm(const QString &name, const QString &caption, WorkingState &state);

    // Puts the proposed values into the inputs.
    virtual void propose() = 0;
    // Where the form puts its inputs.
    QWidget *inputArea() const;
    // Takes the inputs into the form's tab order; after they are all there.
    void inputsComplete();

    void proposeWeight(NumericEdit *edit);
    // The newest recent laboratory result of an exam.
    void proposeResult(NumericEdit *edit, const QString &examCode);

    double result() const { return m_result; }
    // Shows the result line (SSPanel2) and keeps the value for the host.
    void showResult(double value, const QString &text);
    // Shows the line below it (SSPanel1). Emphasised is dark red and bold, a warning has a sign beside it as
    // well.
    enum class Note { Plain, Emphasised, Warning };
    void showNote(const QString &text, Note kind = Note::Plain);
    // The lines, as long as they are there, no longer belong to what the inputs hold.
    void inputsChanged() override;
    void dateLeft() override;

    void load() override;
    void unloading() override;

private:
    void reset();

    std::unique_ptr<Ui::CalculatorForm> m_ui;
    double m_result = 0;
};

} // namespace clivara
