// SPDX-License-Identifier: Apache-2.0
#include "evaluations/SindrMetabolica.h"

#include "chart/WorkingState.h"
#include "controls/NumericEdit.h"
#include "evaluations/CardiovascularRules.h"
#include "ui_SindrMetabolicaInputs.h"
#include "values/JetValues.h"

namespace clivara {

namespace {

std::unique_ptr<Ui::SindrMetabolicaInputs> setUp(QWidget *place)
{
    auto inputs = std::make_unique<Ui::SindrMetabolicaInputs>();
    inputs->setupUi(place);
    return inputs;
}

} // namespace

SindrMetabolica::SindrMetabolica(WorkingState &state)
    : EvaluationForm(QStringLiteral("SindrMetabolica"),
                     {QStringLiteral("Sindrome Metabolica"), QStringLiteral("S.M."),
                      QStringLiteral("Anda&mento della diagnosi")},
                     HistoryPlot::Scale::YesNo, state)
    , m_inputs(setUp(inputArea()))
    , m_fields{{
          {MetabolicItem::Waist, m_inputs->me_ca, m_inputs->me_caUnit, plausibleWaistCm,
           m_inputs->me_caThreshold, m_inputs->me_caSource,
           QStringLiteral("Inserire il valore Circonferenza Addominale!"),
           QStringLiteral("circonferenza addominale")},
          {MetabolicItem::Systolic, m_inputs->me_pas, m_inputs->me_pasUnit, plausibleSystolicMmHg,
           m_inputs->me_pasThreshold, m_inputs->me_pasSource,
           QStringLiteral("Inserire il valore della pressione arteriosa sistolica!"),
           QStringLiteral("pressione sistolica")},
          {MetabolicItem::Diastolic, m_inputs->me_pad, m_inputs->me_padUnit, plausibleDiastolicMmHg,
           m_inputs->me_padThreshold, m_inputs->me_padSource,
           QStringLiteral("Inserire il valore della pressione arteriosa diastolica!"),
           QStringLiteral("pressione diastolica")},
          {MetabolicItem::Glucose, m_inputs->me_glic, m_inputs->me_glicUnit, plausibleGlucoseMgDl,
           m_inputs->me_glicThreshold, m_inputs->me_glicSource,
           QStringLiteral("Inserire il valore della glicemia (a digiuno)!"), QStringLiteral("glicemia")},
          {MetabolicItem::Hdl, m_inputs->me_hdl, m_inputs->me_hdlUnit, plausibleHdlMgDl,
           m_inputs->me_hdlThreshold, m_inputs->me_hdlSource,
           QStringLiteral("Inserire il valore della HDL-colesterolemia!"), QStringLiteral("HDL")},
          {MetabolicItem::Triglycerides, m_inputs->me_trigl, m_inputs->me_triglUnit,
           plausibleTriglyceridesMgDl, m_inputs->me_triglThreshold, m_inputs->me_triglSource,
           QStringLiteral("Inserire il valore dei trigliceridi!"), QStringLiteral("trigliceridi")},
      }}
{
    for (const Field &of : m_fields) {
        addInput(of.edit, of.source, of.unit, of.plausible);
        makeQuiet(of.threshold);
    }
    inputsComplete();
}

SindrMetabolica::~SindrMetabolica() = default;

void SindrMetabolica::load()
{
    m_verdict = 0;
    readThresholds();
    EvaluationForm::load();
    showThresholds();
}

void SindrMetabolica::unloading()
{
    handBack(QStringLiteral("valutazione"), m_verdict);
}

void SindrMetabolica::readThresholds()
{
    m_thresholds.reset();
    guarded([this] { m_thresholds = readMetabolicThresholds(m_state.clinical(), regionCode()); });
}

void SindrMetabolica::propose()
{
    const QDate today = m_state.clock.today();
    const auto result = [today](const QString &examCode) {
        return [today, examCode](dao::Database &clinical, qint32 patientCode) {
            return readRecentMetabolicResult(clinical, patientCode, examCode, today);
        };
    };
    std::optional<PressureProposals> pressures; // both are of one reading
    const auto pressure = [&pressures, today](Finding PressureProposals::*which) {
        return [&pressures, today, which](dao::Database &clinical, qint32 patientCode) {
            if (!pressures)
                pressures = readRecentPressures(clinical, patientCode, today);
            return (*pressures).*which;
        };
    };

    const auto exam = QStringLiteral("esame del %1");
    const auto measured = QStringLiteral("misurata il %1");
    proposeValue(m_inputs->me_ca, measured, [today](dao::Database &clinical, qint32 patientCode) {
        return readRecentWaist(clinical, patientCode, today);
    });
    proposeValue(m_inputs->me_trigl, exam, result(QStringLiteral("90.43.2")));
    proposeValue(m_inputs->me_hdl, exam, result(QStringLiteral("90.14.1")));
    proposeValue(m_inputs->me_glic, exam, result(QStringLiteral("90.27.1")));
    proposeValue(m_inputs->me_pas, measured, pressure(&PressureProposals::systolic));
    proposeValue(m_inputs->me_pad, measured, pressure(&PressureProposals::diastolic));
}

void SindrMetabolica::inputsChanged()
{
    EvaluationForm::inputsChanged();
    showThresholds();
}

void SindrMetabolica::showThresholds()
{
    int beyond = 0;
    for (const Field &of : m_fields) {
        const auto threshold = m_thresholds ? m_thresholds->of(of.item, sexText()) : std::nullopt;
        const double value = of.edit->number();
        const bool isBeyond = threshold && value != 0 && isBeyondThreshold(of.item, value, *threshold);
        beyond += isBeyond ? 1 : 0;
        of.threshold->setText(
            threshold ? QStringLiteral("%1 %2 %3")
                            .arg(isBeyond ? QStringLiteral("▲") : QStringLiteral("soglia"),
                                 of.item == MetabolicItem::Hdl ? QStringLiteral("≤") : QStringLiteral("≥"),
                                 jet::numberText(*threshold))
                      : QString());
        of.threshold->setToolTip(isBeyond ? QStringLiteral("Oltre la soglia regionale") : QString());
        of.threshold->setAccessibleName(isBeyond ? QStringLiteral("Oltre la soglia regionale ")
                                                       + of.threshold->text()
                                                 : of.threshold->text());
    }
    if (!m_thresholds) {
        showHint(QStringLiteral("Soglie regionali non disponibili."));
        return;
    }
    const QString since =
        m_thresholds->since.isValid()
            ? QStringLiteral(", in vigore dal %1").arg(jet::slashedDate(m_thresholds->since))
            : QString();
    showHint(QStringLiteral("▲ Valori oltre le soglie regionali: %1 (regione %2%3).")
                 .arg(beyond)
                 .arg(regionCode(), since));
}

void SindrMetabolica::compute()
{
    for (const Field &of : m_fields) {
        if (!required(of.edit, of.missing))
            return;
    }
    const auto number = [this](MetabolicItem item) { return field(item).edit->number(); };
    const auto whole = [&](MetabolicItem item) { return wholeNumber(number(item)); };
    const MetabolicMeasurements measurements{
        whole(MetabolicItem::Waist),   whole(MetabolicItem::Systolic), whole(MetabolicItem::Diastolic),
        whole(MetabolicItem::Glucose), whole(MetabolicItem::Hdl),      whole(MetabolicItem::Triglycerides)};
    m_verdict = CalcolaSM(sexText(), int(ageYears()), measurements, regionCode());
    m_computed = {m_verdict,
                  number(MetabolicItem::Waist),
                  number(MetabolicItem::Systolic),
                  number(MetabolicItem::Diastolic),
                  number(MetabolicItem::Glucose),
                  number(MetabolicItem::Triglycerides)};
    setSavable(true);
    showResult(metabolicVerdictText(m_verdict), criteriaLine(measurements));
    QStringList remarks{birthRemark(), sexRemark()};
    remarks.removeAll(QString());
    showStatus(remarks.join(u' '), true);
}

QString SindrMetabolica::withoutSex() const
{
    return QStringLiteral("valgono le soglie femminili");
}

QString SindrMetabolica::withoutBirth() const
{
    const QString band = ageBand(0);
    return band.isEmpty() ? QStringLiteral("il calcolo usa 0 anni")
                          : QStringLiteral("il calcolo usa 0 anni, %1").arg(band);
}

QString SindrMetabolica::ageBand(int age) const
{
    return isOutsideMetabolicProgramme(age, regionCode())
               ? QStringLiteral("fuori dai 25–70 in cui vale la diagnosi in questa regione")
               : QString();
}

QString SindrMetabolica::inputRemark(const NumericEdit *edit) const
{
    return edit == m_inputs->me_pad ? pressureRemark(m_inputs->me_pas->number(), edit->number()) : QString();
}

QString SindrMetabolica::criteriaLine(const MetabolicMeasurements &measurements) const
{
    if (isOutsideMetabolicProgramme(int(ageYears()), regionCode()))
        return QStringLiteral("In questa regione la diagnosi vale da 25 a 70 anni.");
    QStringList names;
    for (const MetabolicItem item : metabolicCriteria(sexText(), measurements))
        names << field(item).name;
    if (names.isEmpty())
        return QStringLiteral("Nessun criterio presente.");
    return QStringLiteral("Criteri presenti: %1 (%2).")
        .arg(names.size())
        .arg(names.join(QStringLiteral(", ")));
}

QList<HistoryRow> SindrMetabolica::history()
{
    return readMetabolicHistory(m_state.clinical(), m_state.header.patientCode);
}

bool SindrMetabolica::showSaved(const QDateTime &when)
{
    const auto saved =
        readEvaluation<MetabolicEvaluation>(m_state.clinical(), storedAs(), m_state.header.patientCode, when);
    if (!saved)
        return false;
    showStored(m_inputs->me_ca, optionalText(saved->waistCm));
    showStored(m_inputs->me_pas, optionalText(saved->systolicMmHg));
    showStored(m_inputs->me_pad, optionalText(saved->diastolicMmHg));
    showStored(m_inputs->me_glic, optionalText(saved->glucoseMgDl));
    showStored(m_inputs->me_trigl, optionalText(saved->triglyceridesMgDl));
    showNotReloaded(m_inputs->me_hdl, m_inputs->me_hdlSource);
    showResult(metabolicVerdictText(saved->verdict));
    return true;
}

WriteResult SindrMetabolica::save(const QDateTime &when, bool isNew, EvaluationVersions &versions)
{
    return saveMetabolic(m_state, when, m_computed, isNew, versions);
}

} // namespace clivara
