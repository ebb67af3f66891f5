// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "calculators/CalculatorRecords.h"
#include "calculators/CalculatorRules.h"
#include "support/ui/ChartForm.h"

#include <QList>
#include <functional>
#include <memory>

class QLabel;

namespace Ui {
class CalculatorForm;
}

namespace clivara {

class NumericEdit;
struct WorkingState;

// The frame that the calculators share: sex, age and date of the patient, input fields with the values
// proposed from the patient's records, two result lines and the buttons. On closing it asks the host to
// refresh its diary and hands back {"valutazione", value}, 0 when nothing was computed since the form was
// opened.
class CalculatorForm : public ChartForm {
    Q_OBJECT

public:
    ~CalculatorForm() override;

protected:
    CalculatorForm(const QString &name, const QString &caption, WorkingState &state);

    // Puts the proposed values into the inputs.
    virtual void propose() = 0;
    // What the compute button does.
    virtual void compute() = 0;

    // Where the form puts its inputs.
    QWidget *inputArea() const;
    // Makes known an input and the label beside it that says where its value comes from.
    void addInput(NumericEdit *edit, QLabel *source);
    // Takes the inputs into the form's tab order; after they are all there.
    void inputsComplete();

    using Reader = std::function<std::optional<Proposal>(dao::Database &clinical, qint32 patientCode)>;
    // Writes what the reader finds into the input, and beside it the date by `phrase` ("esame del %1"). When
    // it finds nothing, or cannot read, the input stays as it is.
    void proposeValue(NumericEdit *edit, const QString &phrase, const Reader &read);
    void proposeWeight(NumericEdit *edit);
    // The newest recent laboratory result of an exam.
    void proposeResult(NumericEdit *edit, const QString &examCode);

    // The input's number; empty, after the warning, when it is 0 or blank.
    std::optional<double> required(NumericEdit *edit, const QString &warning);
    Sex sex() const;
    double ageYears() const; // 0 when unknown

    double result() const { return m_result; }
    // Shows the result line (SSPanel2) and keeps the value for the host.
    void showResult(double value, const QString &text);
    // Shows the line below it (SSPanel1). Emphasised is dark red and bold, a warning has a sign beside it as
    // well.
    enum class Note { Plain, Emphasised, Warning };
    void showNote(const QString &text, Note kind = Note::Plain);
    // The lines, as long as they are there, no longer belong to what the inputs hold.
    void resultsOutdated();

    void load() override;
    void unloading() override;

private:
    struct Input {
        NumericEdit *edit;
        QLabel *source;
    };

    void loadPatient();
    void fillInputs(const QString &text);
    void reset();
    void checkDateField();
    void focusFirst();

    WorkingState &m_state;
    std::unique_ptr<Ui::CalculatorForm> m_ui;
    QList<Input> m_inputs;
    QString m_validDate; // of MaskEdBox1
    double m_result = 0;
};

} // namespace clivara
