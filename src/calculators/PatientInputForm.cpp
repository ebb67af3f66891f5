// SPDX-License-Identifier: Apache-2.0
#include "calculators/PatientInputForm.h"

#include "controls/DateCheck.h"
#include "controls/MaskedDateEdit.h"
#include "controls/NumericEdit.h"
#include "data/engine/Dao.h"
#include "host/working_state/ErrorLog.h"
#include "host/working_state/WorkingState.h"
#include "ui_PersonLine.h"
#include "values/JetValues.h"

namespace clivara {

void setForeColour(QLabel *label, QColor colour)
{
    QPalette palette = label->palette();
    palette.setColor(QPalette::Active, QPalette::WindowText, colour);
    palette.setColor(QPalette::Inactive, QPalette::WindowText, colour);
    label->setPalette(palette);
}

void makeQuiet(QLabel *label)
{
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * 0.9);
    label->setFont(font);
    setForeColour(label, QColor(0x55, 0x55, 0x55));
}

PatientInputForm::PatientInputForm(const QString &name, const QString &caption, WorkingState &state)
    : ChartForm(name, state.header, state.clock)
    , m_state(state)
    , m_person(std::make_unique<Ui::PersonLine>())
{
    setWindowTitle(caption);
}

PatientInputForm::~PatientInputForm() = default;

void PatientInputForm::setUpPerson(QWidget *place, const QAbstractButton *exit)
{
    m_person->setupUi(place);
    m_exit = exit;
    connect(m_person->MaskEdBox1, &MaskedDateEdit::committed, this, [this] {
        if (isLoaded() && QApplication::focusWidget() != m_exit)
            dateLeft();
    });
}

void PatientInputForm::addBesideAge(QLabel *label)
{
    m_person->line->insertWidget(m_person->line->indexOf(m_person->ageUnit) + 1, label);
}

void PatientInputForm::addInput(NumericEdit *edit, QLabel *source)
{
    m_inputs.append({edit, source});
    makeQuiet(source);
    connect(edit, &QLineEdit::textChanged, this, [this, source] {
        showSource(source, {});
        inputsChanged();
    });
}

void PatientInputForm::orderTabs(const QWidget *inputs, const QList<QWidget *> &others)
{
    QWidget *before = m_person->MaskEdBox1;
    const auto follow = [&before](QWidget *widget) {
        setTabOrder(before, widget);
        before = widget;
    };
    for (QWidget *const widget : inputs->findChildren<QWidget *>()) {
        if (widget->focusPolicy() & Qt::TabFocus)
            follow(widget);
    }
    for (QWidget *const widget : others)
        follow(widget);
}

void PatientInputForm::showPatient()
{
    m_birth = {};
    m_person->lblSesso->clear();
    m_person->lblEta->clear();
    m_person->ageUnit->hide();
    guarded([this] {
        const auto patient = readCalculatorPatient(m_state.clinical(), m_state.header.patientCode);
        if (!patient)
            return;
        m_birth = patient->birth;
        m_person->lblSesso->setText(patient->sex);
        if (const int age = exactAge(m_birth, m_state.clock.today()); age >= 0) {
            m_person->lblEta->setText(QString::number(age));
            m_person->ageUnit->show();
        }
    });
}

bool PatientInputForm::guarded(const std::function<void()> &routine)
{
    try {
        routine();
        return true;
    } catch (const dao::Error &error) {
        logError(m_state, objectName(), error);
        return false;
    }
}

void PatientInputForm::clearInputs()
{
    showDate(jet::slashedDate(m_state.clock.today()));
    fillInputs({});
}

void PatientInputForm::fillInputs(const QString &text)
{
    for (const Input &input : m_inputs)
        input.edit->setText(text);
}

void PatientInputForm::focusFirstEmpty(QWidget *otherwise)
{
    const auto empty = std::find_if(m_inputs.begin(), m_inputs.end(), [](const Input &input) {
        return input.edit->text().trimmed().isEmpty();
    });
    if (empty != m_inputs.end())
        empty->edit->setFocus();
    else
        otherwise->setFocus();
}

void PatientInputForm::proposeValue(NumericEdit *edit, const QString &phrase, const Reader &read)
{
    const auto input = std::find_if(m_inputs.begin(), m_inputs.end(),
                                    [edit](const Input &known) { return known.edit == edit; });
    std::optional<Proposal> proposal;
    if (!guarded([&] { proposal = read(m_state.clinical(), m_state.header.patientCode); })) {
        showUnread(input->source);
        return;
    }
    if (!proposal)
        return;
    edit->setText(proposal->text);
    if (proposal->stored.isEmpty())
        return;
    QString source = proposal->date.isValid() ? phrase.arg(jet::slashedDate(proposal->date)) : QString();
    // The doctor sees when the text is not all of it a number, or not the proposed one: "1,10" is read as 1.
    const auto stored = jet::numberFromText(proposal->stored);
    if (!stored || *stored != jet::leadingNumber(proposal->text))
        source = QStringLiteral("%1: «%2» letto come %3")
                     .arg(source, proposal->stored, jet::numberText(jet::leadingNumber(proposal->text)));
    showSource(input->source, source);
}

void PatientInputForm::showSource(QLabel *label, const QString &source)
{
    label->setText(source);
    label->setToolTip(source.isEmpty() ? QString() : QStringLiteral("Valore proposto: ") + source);
}

void PatientInputForm::showUnread(QLabel *label)
{
    label->setText(QStringLiteral("non è stato possibile leggere"));
    label->setToolTip({});
}

std::optional<double> PatientInputForm::required(NumericEdit *edit, const QString &warning)
{
    if (const double number = edit->number(); number != 0)
        return number;
    m_state.prompts.warn(
        edit->isRefused() ? QStringLiteral("%1: %2.").arg(edit->accessibleName(), edit->refusal()) : warning);
    edit->setFocus();
    edit->selectAll();
    return std::nullopt;
}

QString PatientInputForm::sexText() const
{
    return m_person->lblSesso->text();
}

double PatientInputForm::ageYears() const
{
    return jet::leadingNumber(m_person->lblEta->text());
}

MaskedDateEdit *PatientInputForm::dateEdit() const
{
    return m_person->MaskEdBox1;
}

void PatientInputForm::showDate(const QString &text)
{
    m_validDate = text;
    m_person->MaskEdBox1->setDateText(text);
}

bool PatientInputForm::checkDateField()
{
    const QString typed = m_person->MaskEdBox1->dateText();
    if (typed == m_validDate)
        return true;
    if (!checkDate(typed, true, m_state.prompts))
        return false;
    showDate(withFullYear(typed));
    return true;
}

void PatientInputForm::handBack(const QString &name, const QVariant &value)
{
    m_state.settings.write(QStringLiteral("AGGIORNA_DIARIO"), QStringLiteral("PREVENZIONE"));
    m_state.result = QVariantList{name, value};
}

} // namespace clivara
