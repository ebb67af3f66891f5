// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "inputs/CalculatorRules.h"
#include "inputs/InputRemarks.h"
#include "inputs/RemarkForm.h"

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

// The frame of the forms that compute something from numbers of the current patient: sex, age and date at the
// top, and input fields with values proposed from the patient's records, each with a label that says where
// its value comes from. What is impossible, unlikely or not what it looks like is remarked in red beside its
// field, in a label "avviso_" and the field's name; nothing is refused for it. Enter leads to values that
// were not wholly read before it computes.
class PatientInputForm : public RemarkForm {
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
    // Makes known an input, the label beside it that says where its value comes from, the one with its unit,
    // and what is plausible for it. Beside the source, which stands in a grid, comes the label for remarks.
    void addInput(NumericEdit *edit, QLabel *source, const QLabel *unit, PlausibleRange plausible);
    void setPlausible(const NumericEdit *edit, PlausibleRange plausible);
    // The button that computes, the form's default.
    void setComputeButton(QAbstractButton *button);
    // The order of Tab: date, the widgets inside `inputs`, then the others; after they are all there. The
    // inputs scroll where the screen has no room for all remarks.
    void orderTabs(QWidget *inputs, const QList<QWidget *> &others);

    // Reads sex and age of the patient; what cannot be read stays empty.
    void showPatient();
    // Today's date and empty inputs.
    void clearInputs();
    void fillInputs(const QString &text);
    // The focus on the first input whose value must be seen, else on the first without a value, else on the
    // compute button.
    void focusFirst();
    // Shows a value that is not proposed, and has no remarks but those on the value itself.
    void showStored(NumericEdit *edit, const QString &text);

    using Reader = std::function<Finding(dao::Database &clinical, qint32 patientCode)>;
    // Writes what the reader finds into the input, and beside it the date by `phrase` ("esame del %1") and
    // what is to be remarked. When it finds nothing, or cannot read, which is said beside it, the input stays
    // as it is.
    void proposeValue(NumericEdit *edit, const QString &phrase, const Reader &read);
    // The label beside an input or a box says where its value comes from.
    static void showSource(QLabel *label, const QString &source);
    // It says that nothing is proposed because the record could not be read.
    static void showUnread(QLabel *label);

    // The input's number; empty, after the warning, when it is 0 or blank, and after another one that names
    // the field and the text, when that is no number.
    std::optional<double> required(NumericEdit *edit, const QString &warning);
    QString sexText() const;
    Sex sex() const { return sexFromText(sexText()); }
    double ageYears() const; // 0 when unknown
    bool isAgeKnown() const;
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
    // What the compute button does; it may throw dao::Error, which ends up in the log.
    virtual void compute() = 0;

    // What the form does when the sex, or the birth date, is unknown, as the end of a sentence ("il calcolo
    // usa 0 anni"); empty where it does not matter.
    virtual QString withoutSex() const = 0;
    virtual QString withoutBirth() const = 0;
    // "Sesso non indicato: ..." and the like; empty when it is known or does not matter.
    QString sexRemark() const;
    QString birthRemark() const;
    // Where an age lies outside the ages of the form ("fuori dai 35–69 anni dell'equazione"); empty within
    // them.
    virtual QString ageBand(int) const { return {}; }
    // A remark on an input's value beyond its range, by the values of others; empty when there is none.
    virtual QString inputRemark(const NumericEdit *) const { return {}; }

    // Asks the host to refresh its diary and hands back {name, value}: what these forms do on closing.
    void handBack(const QString &name, const QVariant &value);

    // The date that the field held when it was right for the last time.
    const QString &validDate() const { return m_validDate; }

    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    struct Input {
        NumericEdit *edit;
        QLabel *source;
        QLabel *remark;
        PlausibleRange plausible;
        QStringList found; // what is remarked of the proposed value
        bool mustBeSeen = false; // and has not been yet
    };
    Input &input(const QObject *edit);
    // The input's value is no longer the proposed one.
    void forgetOrigin(Input &input);
    QStringList valueRemarks(const Input &input) const;
    void refreshRemarks();
    void refreshPersonRemarks();
    void refreshDateRemarks();
    // Counts the focused input as seen and moves the focus to the next that must be seen, or to the compute
    // button. False, without doing anything, when none must be seen.
    bool leadToUnseen();

    std::unique_ptr<Ui::PersonLine> m_person;
    const QAbstractButton *m_exit = nullptr;
    QAbstractButton *m_compute = nullptr;
    QList<Input> m_inputs;
    const NumericEdit *m_typing = nullptr; // the input that somebody is typing in
    bool m_isRegistryRead = false; // else nothing is known of sex and birth
    QDate m_birth;
    QString m_validDate;
    bool m_isLeading = false; // the form itself moves the focus
};

} // namespace clivara
