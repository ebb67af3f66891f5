// SPDX-License-Identifier: Apache-2.0
#include "app/window/PatientPanel.h"

#include "controls/ReportIcons.h"
#include "problems/ProblemRecords.h"
#include "support/PatientHeader.h"
#include "ui_PatientPanel.h"

#include <QStyle>

namespace orvale {

namespace {

// Widths that show a part of the panel at its best, in average characters.
constexpr int sideBySideCharacters = 84;
constexpr int problemCharacters = 40;
constexpr int laboratoryCharacters = 60;

const QString dash = QStringLiteral("–");

QString shown(QDate date)
{
    return date.toString(QStringLiteral("dd/MM/yyyy"));
}

// As the chart's own grids show dates.
QString shortly(QDate date)
{
    return date.toString(QStringLiteral("dd/MM/yy"));
}

QString orDash(const QString &text)
{
    return text.isEmpty() ? dash : text;
}

// By shape as in the section of the problems.
clivara::ReportIcon problemIcon(qint16 state)
{
    using clivara::ProblemState;
    using clivara::ReportIcon;
    switch (ProblemState(state)) {
    case ProblemState::Open:
        return ReportIcon::OpenProblem;
    case ProblemState::Chronic:
        return ReportIcon::ChronicProblem;
    case ProblemState::Closed:
        return ReportIcon::ClosedProblem;
    case ProblemState::Unspecified:
        break;
    }
    return ReportIcon::UnspecifiedProblem;
}

// The sign of a value beyond its normal range, and what it means.
std::pair<QString, QString> signOf(const LaboratoryLine &line)
{
    const QString by = QStringLiteral(" secondo il referto: ") + line.markedBy;
    switch (line.mark) {
    case RangeMark::Above:
        return {QStringLiteral("▲ "), QStringLiteral("Sopra la norma") + by};
    case RangeMark::Below:
        return {QStringLiteral("▼ "), QStringLiteral("Sotto la norma") + by};
    case RangeMark::Beyond:
        return {QStringLiteral("⚠ "), QStringLiteral("Fuori norma") + by};
    case RangeMark::None:
        break;
    }
    return {};
}

QString joined(const QStringList &parts, const QString &separator)
{
    QStringList filled = parts;
    filled.removeAll(QString());
    return filled.join(separator);
}

} // namespace

PatientPanel::PatientPanel(QWidget *parent)
    : QStackedWidget(parent)
    , m_ui(std::make_unique<Ui::PatientPanel>())
{
    m_ui->setupUi(this);
    m_ui->problems->setTitles({QStringLiteral("Dal"), QStringLiteral("Problema"), QStringLiteral("ICD-9")}, 1,
                              problemCharacters);
    m_ui->laboratory->setTitles({QStringLiteral("Esame"), QStringLiteral("Valore"), QStringLiteral("Data"),
                                 QStringLiteral("Precedente")},
                                0, laboratoryCharacters);
    m_ui->visits->setTitles({QStringLiteral("Data"), QStringLiteral("Tipo"), QStringLiteral("Sintesi")}, 2);
    clear();
}

PatientPanel::~PatientPanel() = default;

void PatientPanel::clear()
{
    setCurrentWidget(m_ui->emptyPage);
}

void PatientPanel::showPatient(const PatientSummary &summary, QDate today)
{
    showRegistry(summary.registry, today);
    showProblems(summary.problems);
    showVisits(summary.visits);
    showLaboratory(summary.laboratory, summary.pressure);
    setCurrentWidget(m_ui->patientPage);
}

void PatientPanel::showRegistry(const PatientRegistry &patient, QDate today)
{
    m_ui->initials->setText(patient.surname.left(1).toUpper() + patient.name.left(1).toUpper());
    m_ui->patientName->setText(joined({patient.surname, patient.name}, QStringLiteral(" ")));

    const bool isFemale = patient.sex == QLatin1String("F");
    const int age = clivara::exactAge(patient.birthDate, today);
    QString birth;
    if (patient.birthDate.isValid()) {
        birth =
            (isFemale ? QStringLiteral("nata il ") : QStringLiteral("nato il ")) + shown(patient.birthDate);
        if (!patient.birthplace.isEmpty())
            birth += QStringLiteral(" a ") + patient.birthplace;
    } else {
        birth = QStringLiteral("data di nascita non registrata");
    }
    const QString sex = isFemale                            ? QStringLiteral("Femmina")
                        : patient.sex == QLatin1String("M") ? QStringLiteral("Maschio")
                        : patient.sex.isEmpty()             ? QStringLiteral("Sesso non registrato")
                                                            : QStringLiteral("Sesso: ") + patient.sex;
    const QString years = age < 0    ? QString()
                          : age == 1 ? QStringLiteral("1 anno")
                                     : QStringLiteral("%1 anni").arg(age);
    m_ui->patientFacts->setText(
        joined({sex, years, birth, QStringLiteral("codice %1").arg(patient.code)}, QStringLiteral("  ·  ")));

    m_ui->fiscalCode->setText(orDash(patient.fiscalCode));
    m_ui->telephone->setText(orDash(patient.telephone));
    const QString province = patient.province.isEmpty() ? QString() : u'(' + patient.province + u')';
    m_ui->address->setText(orDash(
        joined({patient.address, joined({patient.postalCode, patient.city, province}, QStringLiteral(" "))},
               QStringLiteral(", "))));
    QStringList exemptions;
    if (!patient.exemptionPathology.isEmpty())
        exemptions << QStringLiteral("per patologia (%1)").arg(patient.exemptionPathology);
    if (!patient.exemptionInvalidity.isEmpty())
        exemptions << QStringLiteral("per invalidità (%1)").arg(patient.exemptionInvalidity);
    m_ui->exemptions->setText(exemptions.isEmpty() ? QStringLiteral("nessuna")
                                                   : exemptions.join(QStringLiteral(", ")));

    showAllergies(patient.allergies);
}

void PatientPanel::showAllergies(const clivara::Allergies &allergies)
{
    using clivara::AllergyState;
    m_ui->allergies->setText(clivara::allergyLine(allergies));
    m_ui->allergies->setAccessibleName(clivara::allergyWords(allergies));
    // The style sheet's ground and weight, beside the sign and the words.
    const bool isWarning = allergies.state == AllergyState::Known || allergies.state == AllergyState::Unread;
    m_ui->allergies->setProperty("alert", isWarning);
    m_ui->allergies->style()->unpolish(m_ui->allergies);
    m_ui->allergies->style()->polish(m_ui->allergies);
}

void PatientPanel::showProblems(const QList<ProblemLine> &problems)
{
    QList<QList<Fact>> rows;
    for (const ProblemLine &problem : problems) {
        Fact since(orDash(shortly(problem.since)));
        since.icon = clivara::reportIcon(problemIcon(problem.state));
        since.meaning = clivara::problemStateText(problem.state);
        rows << QList<Fact>{since, problem.description, problem.icd9};
    }
    m_ui->problems->setRows(rows, QStringLiteral("Nessun problema aperto"));
    m_ui->problemsTitle->setText(problems.isEmpty()
                                     ? QStringLiteral("Problemi aperti")
                                     : QStringLiteral("Problemi aperti (%1)").arg(problems.size()));
}

void PatientPanel::showVisits(const QList<VisitLine> &visits)
{
    QList<QList<Fact>> rows;
    for (const VisitLine &visit : visits)
        rows << QList<Fact>{shortly(visit.date), visit.type, visit.text};
    m_ui->visits->setRows(rows, QStringLiteral("Nessuna visita registrata"));
}

void PatientPanel::showLaboratory(const QList<LaboratoryLine> &lines, const BloodPressure &pressure)
{
    QList<QList<Fact>> rows;
    for (const LaboratoryLine &line : lines) {
        QString previous;
        if (!line.previousValue.isEmpty())
            previous = QStringLiteral("%1 (%2)").arg(line.previousValue,
                                                     line.previousDate.toString(QStringLiteral("MM/yy")));
        const auto [sign, meaning] = signOf(line);
        Fact value(sign + joined({line.value, line.unit}, QStringLiteral(" ")));
        value.meaning = meaning;
        value.isMarked = line.mark != RangeMark::None;
        rows << QList<Fact>{line.exam, value, shortly(line.date), previous};
    }
    m_ui->laboratory->setRows(rows, QStringLiteral("Nessun risultato registrato"));

    const QString diastolic = pressure.diastolic > 0 ? QString::number(pressure.diastolic) : dash;
    m_ui->pressure->setText(QStringLiteral("Pressione arteriosa: %1/%2 mmHg il %3")
                                .arg(QString::number(pressure.systolic), diastolic, shown(pressure.date)));
    m_ui->pressure->setVisible(pressure.systolic > 0);
}

void PatientPanel::resizeEvent(QResizeEvent *event)
{
    QStackedWidget::resizeEvent(event);
    const bool isNarrow = width() < sideBySideCharacters * fontMetrics().averageCharWidth();
    m_ui->middleLayout->setDirection(isNarrow ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    // The layout caches the height for a width, which has changed.
    m_ui->patientLayout->invalidate();
}

} // namespace orvale
