// SPDX-License-Identifier: Apache-2.0
#include "calculators/CalculatorForm.h"

#include "controls/DateCheck.h"
#include "controls/NumericEdit.h"
#include "data/engine/Dao.h"
#include "host/working_state/WorkingState.h"
#include "ui_CalculatorForm.h"
#include "values/JetValues.h"

namespace clivara {

namespace {

constexpr QColor black(0, 0, 0);
constexpr QColor darkRed(192, 0, 0);

QString dayText(QDate date)
{
    return jet::formatDate(jet::dateTime(date), u"dd/mm/yyyy");
}

void setForeColour(QLabel *label, QColor colour)
{
    QPalette palette = label->palette();
    palette.setColor(QPalette::Active, QPalette::WindowText, colour);
    palette.setColor(QPalette::Inactive, QPalette::WindowText, colour);
    label->setPalette(palette);
}

// A quieter text, smaller and grey.
void makeQuiet(QLabel *label)
{
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * 0.9);
    label->setFont(font);
    setForeColour(label, QColor(0x55, 0x55, 0x55));
}

} // namespace

CalculatorForm::CalculatorForm(const QString &name, const QString &caption, WorkingState &state)
    : ChartForm(name, state.header, state.clock)
    , m_state(state)
    , m_ui(std::make_unique<Ui::CalculatorForm>())
{
    setWindowTitle(caption);
    m_ui->setupUi(contents());

    QPalette paper = m_ui->results->palette();
    paper.setColor(QPalette::Window, Qt::white);
    m_ui->results->setPalette(paper);
    QFont large = m_ui->SSPanel2->font();
    large.setPointSizeF(large.pointSizeF() * 1.25);
    large.setBold(true);
    m_ui->SSPanel2->setFont(large);
    // Room for the longest lines, so that the form does not grow under the doctor's eyes.
    m_ui->SSPanel2->setMinimumWidth(
        QFontMetrics(large).horizontalAdvance(QStringLiteral("Formula di Cockcroft: VFG = 100.00 ml/min")));
    m_ui->SSPanel2->setMinimumHeight(QFontMetrics(large).height());
    m_ui->SSPanel1->setMinimumHeight(fontMetrics().height());
    const int iconSize = style()->pixelMetric(QStyle::PM_SmallIconSize);
    m_ui->warningIcon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(iconSize));

    connect(m_ui->MaskEdBox1, &MaskedDateEdit::committed, this, &CalculatorForm::checkDateField);
    connect(m_ui->Button2_0, &QPushButton::clicked, this, [this] { compute(); });
    connect(m_ui->Button2_1, &QPushButton::clicked, this, [this] { fillInputs(QStringLiteral("0")); });
    connect(m_ui->Button2_2, &QPushButton::clicked, this, &CalculatorForm::reset);
    connect(m_ui->Button1, &QPushButton::clicked, this, &CalculatorForm::reject);
}

CalculatorForm::~CalculatorForm() = default;

QWidget *CalculatorForm::inputArea() const
{
    return m_ui->inputs;
}

void CalculatorForm::addInput(NumericEdit *edit, QLabel *source)
{
    m_inputs.append({edit, source});
    makeQuiet(source);
    connect(edit, &QLineEdit::textChanged, this, [this, source] {
        source->clear();
        source->setToolTip({});
        resultsOutdated();
    });
}

void CalculatorForm::inputsComplete()
{
    QWidget *before = m_ui->MaskEdBox1;
    for (QWidget *const widget : m_ui->inputs->findChildren<QWidget *>()) {
        if (widget->focusPolicy() & Qt::TabFocus) {
            setTabOrder(before, widget);
            before = widget;
        }
    }
    for (QWidget *const button : {m_ui->Button2_0, m_ui->Button2_1, m_ui->Button2_2, m_ui->Button1}) {
        setTabOrder(before, button);
        before = button;
    }
}

void CalculatorForm::load()
{
    m_result = 0;
    m_ui->lblSesso->clear();
    m_ui->lblEta->clear();
    m_ui->ageUnit->hide();
    reset();
    loadPatient();
    propose();
    focusFirst();
}

void CalculatorForm::loadPatient()
{
    try {
        const auto patient = readCalculatorPatient(m_state.clinical(), m_state.header.patientCode);
        if (!patient)
            return;
        m_ui->lblSesso->setText(patient->sex);
        if (const int age = exactAge(patient->birth, m_state.clock.today()); age >= 0) {
            m_ui->lblEta->setText(QString::number(age));
            m_ui->ageUnit->show();
        }
    } catch (const dao::Error &) {
        // Sex and age stay empty; the form is usable.
    }
}

void CalculatorForm::proposeValue(NumericEdit *edit, const QString &phrase, const Reader &read)
{
    std::optional<Proposal> proposal;
    try {
        proposal = read(m_state.clinical(), m_state.header.patientCode);
    } catch (const dao::Error &) {
        return; // a proposal is a help: without it the doctor types the value
    }
    if (!proposal)
        return;
    edit->setText(proposal->text);
    if (proposal->stored.isEmpty())
        return;
    QString source = proposal->date.isValid() ? phrase.arg(dayText(proposal->date)) : QString();
    // The doctor sees when the text is not all of it a number: "1,10" is read as 1.
    if (!jet::numberFromText(proposal->stored))
        source = QStringLiteral("%1: «%2» letto come %3")
                     .arg(source, proposal->stored, jet::numberText(jet::leadingNumber(proposal->stored)));
    const auto input = std::find_if(m_inputs.begin(), m_inputs.end(),
                                    [edit](const Input &known) { return known.edit == edit; });
    input->source->setText(source);
    input->source->setToolTip(QStringLiteral("Valore proposto: ") + source);
}

void CalculatorForm::proposeWeight(NumericEdit *edit)
{
    proposeValue(edit, QStringLiteral("rilevato il %1"), readWeight);
}

void CalculatorForm::proposeResult(NumericEdit *edit, const QString &examCode)
{
    proposeValue(edit, QStringLiteral("esame del %1"), [&](dao::Database &clinical, qint32 patientCode) {
        return readNewestResult(clinical, patientCode, examCode, m_state.clock.today());
    });
}

std::optional<double> CalculatorForm::required(NumericEdit *edit, const QString &warning)
{
    if (const double number = edit->number(); number != 0)
        return number;
    m_state.prompts.warn(warning);
    edit->setFocus();
    edit->selectAll();
    return std::nullopt;
}

Sex CalculatorForm::sex() const
{
    return sexFromText(m_ui->lblSesso->text());
}

double CalculatorForm::ageYears() const
{
    return jet::leadingNumber(m_ui->lblEta->text());
}

void CalculatorForm::showResult(double value, const QString &text)
{
    m_result = value;
    m_ui->results->setEnabled(true);
    m_ui->results->setToolTip({});
    m_ui->SSPanel2->setText(text);
}

void CalculatorForm::showNote(const QString &text, Note kind)
{
    m_ui->SSPanel1->setText(text);
    setForeColour(m_ui->SSPanel1, kind == Note::Plain ? black : darkRed);
    QFont font = m_ui->SSPanel1->font();
    font.setBold(kind != Note::Plain);
    m_ui->SSPanel1->setFont(font);
    m_ui->warningIcon->setVisible(kind == Note::Warning);
}

void CalculatorForm::resultsOutdated()
{
    if (m_ui->SSPanel2->text().isEmpty())
        return;
    m_ui->results->setEnabled(false);
    m_ui->results->setToolTip(QStringLiteral("I dati sono cambiati: premere Calcola"));
}

void CalculatorForm::fillInputs(const QString &text)
{
    for (const Input &input : m_inputs)
        input.edit->setText(text);
}

void CalculatorForm::reset()
{
    m_validDate = dayText(m_state.clock.today());
    m_ui->MaskEdBox1->setDateText(m_validDate);
    fillInputs({});
    m_ui->SSPanel2->clear();
    showNote({});
    m_ui->results->setEnabled(true);
    m_ui->results->setToolTip({});
}

void CalculatorForm::checkDateField()
{
    // Whoever leaves the form is not asked for a date any more.
    const QString typed = m_ui->MaskEdBox1->dateText();
    if (!isLoaded() || QApplication::focusWidget() == m_ui->Button1 || typed == m_validDate)
        return;
    if (checkDate(typed, true, m_state.prompts))
        m_validDate = withFullYear(typed);
    m_ui->MaskEdBox1->setDateText(m_validDate);
}

void CalculatorForm::focusFirst()
{
    const auto empty = std::find_if(m_inputs.begin(), m_inputs.end(), [](const Input &input) {
        return input.edit->text().trimmed().isEmpty();
    });
    if (empty != m_inputs.end())
        empty->edit->setFocus();
    else
        m_ui->Button2_0->setFocus();
}

void CalculatorForm::unloading()
{
    m_state.settings.write(QStringLiteral("AGGIORNA_DIARIO"), QStringLiteral("PREVENZIONE"));
    m_state.result = QVariantList{QStringLiteral("valutazione"), m_result};
}

} // namespace clivara
