// SPDX-License-Identifier: Apache-2.0
#include "calculators/CalculatorForm.h"

#include "chart/WorkingState.h"
#include "controls/NumericEdit.h"
#include "ui_CalculatorForm.h"
#include "values/JetValues.h"

namespace clivara {

CalculatorForm::CalculatorForm(const QString &name, const QString &caption, WorkingState &state)
    : PatientInputForm(name, caption, state)
    , m_ui(std::make_unique<Ui::CalculatorForm>())
{
    m_ui->setupUi(contents());
    setUpPerson(m_ui->person, m_ui->Button1);

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

    setComputeButton(m_ui->Button2_0);
    connect(m_ui->Button2_1, &QPushButton::clicked, this, [this] { fillInputs(QStringLiteral("0")); });
    connect(m_ui->Button2_2, &QPushButton::clicked, this, &CalculatorForm::reset);
    connect(m_ui->Button1, &QPushButton::clicked, this, &CalculatorForm::reject);
}

CalculatorForm::~CalculatorForm() = default;

QWidget *CalculatorForm::inputArea() const
{
    return m_ui->inputs;
}

void CalculatorForm::inputsComplete()
{
    orderTabs(m_ui->inputs, {m_ui->Button2_0, m_ui->Button2_1, m_ui->Button2_2, m_ui->Button1});
}

void CalculatorForm::load()
{
    m_result = 0;
    reset();
    showPatient();
    propose();
    focusFirst();
}

void CalculatorForm::proposeWeight(NumericEdit *edit)
{
    setPlausible(edit, isAgeKnown() && ageYears() >= adultYears ? plausibleAdultWeightKg : plausibleWeightKg);
    proposeValue(edit, QStringLiteral("rilevato il %1"), readWeight);
}

void CalculatorForm::proposeResult(NumericEdit *edit, const QString &examCode)
{
    proposeValue(edit, QStringLiteral("esame del %1"), [&](dao::Database &clinical, qint32 patientCode) {
        return readNewestResult(clinical, patientCode, examCode, m_state.clock.today());
    });
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
    setForeColour(m_ui->SSPanel1, kind == Note::Plain ? blackText : darkRedText);
    QFont font = m_ui->SSPanel1->font();
    font.setBold(kind != Note::Plain);
    m_ui->SSPanel1->setFont(font);
    m_ui->warningIcon->setVisible(kind == Note::Warning);
}

void CalculatorForm::inputsChanged()
{
    if (m_ui->SSPanel2->text().isEmpty())
        return;
    m_ui->results->setEnabled(false);
    m_ui->results->setToolTip(QStringLiteral("I dati sono cambiati: premere Calcola"));
}

void CalculatorForm::reset()
{
    clearInputs();
    m_ui->SSPanel2->clear();
    showNote({});
    m_ui->results->setEnabled(true);
    m_ui->results->setToolTip({});
}

void CalculatorForm::dateLeft()
{
    if (!checkDateField())
        showDate(validDate());
}

void CalculatorForm::unloading()
{
    handBack(QStringLiteral("valutazione"), m_result);
}

} // namespace clivara
