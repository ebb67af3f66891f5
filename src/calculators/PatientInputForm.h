// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "calculators/CalculatorRecords.h"
#include "calculators/CalculatorRules.h"
#include "support/ui/ChartForm.h"

#include <QColor>
#include <QDate>
#include <QList>
#include <functional>
#include <memory>

class QAbstractButton;
class QLabel;

namespace Ui {
class PersonLine;
}

namespace clivara {

class MaskedDateEdit;
class NumericEdit;
struct WorkingState;

void setForeColour(QLabel *label, QColor colour);
// A quieter text, smaller and grey.
void makeQuiet(QLabel *label);
constexpr QColor blackText(0, 0, 0);
constexpr QColor darkRedText(192, 0, 0);

// The frame of the forms that compute something from numbers of the current patient: sex, age and date at the top, and
// input fields with values proposed from the patient's records, each with a label that says where its value comes from.
class PatientInputForm : public ChartForm {
    Q_OBJECT

public:
    ~PatientInputForm() override;

protected:
    PatientInputForm(const QString &name, const QString &caption, WorkingState &state);

    // Puts the line with sex, age and date into a widget of the form. Whoever leaves the date field for the exit
    // button is not asked for a date any more.
    void setUpPerson(QWidget *place, const QAbstractButton *exit);
    // A further label beside the age.
    void addBesideAge(QLabel *label);
    // Makes known an input and the label beside it that says where its value comes from.
    void addInput(NumericEdit *edit, QLabel *source);
    // The order of Tab: date, the widgets inside `inputs`, then the others; after they are all there.
    void orderTabs(const QWidget *inputs, const QList<QWidget *> &others);

    // Runs `routine`; false when an error of the databases ended it, of which the log has a line.
    bool guarded(const std::function<void()> &routine);

    // Reads sex and age of the patient; what cannot be read stays empty.
    void showPatient();
    // Today's date and empty inputs.
    void clearInputs();
    void fillInputs(const QString &text);
    // The focus on the first input without a value, else on `otherwise`.
    void focusFirstEmpty(QWidget *otherwise);

    using Reader = std::function<std::optional<Proposal>(dao::Database &clinical, qint32 patientCode)>;
    // Writes what the reader finds into the input, and beside it the date by `phrase` ("esame del %1"). When
    // it finds nothing, or cannot read, which is said beside it, the input stays as it is.
    void proposeValue(NumericEdit *edit, const QString &phrase, const Reader &read);
    // The label beside an input or a box says where its value comes from.
    static void showSource(QLabel *label, const QString &source);
    // It says that nothing is proposed because the record could not be read.
    static void showUnread(QLabel *label);

    // The input's number; empty, after the warning, when it is 0 or blank, and after another one that names the field
    // and the text, when that is no number.
    std::optional<double> required(NumericEdit *edit, const QString &warning);
    QString sexText() const;
    Sex sex() const { return sexFromText(sexText()); }
    double ageYears() const; // 0 when unknown
    QDate birth() const { return m_birth; } // null when unknown

    MaskedDateEdit *dateEdit() const;
    // Shows a date that needs no check.
    void showDate(const QString &text);
    // True when the date field holds a date; otherwise the doctor has been told.
    bool checkDateField();
    // The date field was left, other than for the exit button.
    virtual void dateLeft() = 0;
    // What an input holds is no longer what it was.
    virtual void inputsChanged() = 0;

    // Asks the host to refresh its diary and hands back {name, value}: what these forms do on closing.
    void handBack(const QString &name, const QVariant &value);

    WorkingState &state() const { return m_state; }
    // The date that the field held when it was right for the last time.
    const QString &validDate() const { return m_validDate; }

private:
    struct Input {
        NumericEdit *edit;
        QLabel *source;
    };

    WorkingState &m_state;
    std::unique_ptr<Ui::PersonLine> m_person;
    const QAbstractButton *m_exit = nullptr;
    QList<Input> m_inputs;
    QDate m_birth;
    QString m_validDate;
};

} // namespace clivara
