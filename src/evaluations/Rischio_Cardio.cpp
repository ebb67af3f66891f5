// SPDX-License-Identifier: Apache-2.0
#include "evaluations/Rischio_Cardio.h"

#include "chart/WorkingState.h"
#include "controls/NumericEdit.h"
#include "ui_RischioCardioInputs.h"
#include "values/JetValues.h"

namespace clivara {

Rischio_Cardio::Rischio_Cardio(WorkingState &state)
    : EvaluationForm(QStringLiteral("Rischio_Cardio"),
                     {QStringLiteral("Rischio Cardiovascolare"), QStringLiteral("% rischio"),
                      QStringLiteral("Anda&mento del rischio")},
                     HistoryPlot::Scale::Percent, state)
    , m_inputs(std::make_unique<Ui::RischioCardioInputs>())
{
    m_inputs->setupUi(inputArea());
    addInput(m_inputs->me_pas, m_inputs->me_pasSource, m_inputs->me_pasUnit, plausibleSystolicMmHg);
    addInput(m_inputs->me_col, m_inputs->me_colSource, m_inputs->me_colUnit, plausibleTotalCholesterolMgDl);
    addInput(m_inputs->me_hdl, m_inputs->me_hdlSource, m_inputs->me_hdlUnit, plausibleHdlMgDl);
    for (const auto &[box, source] : {std::pair(m_inputs->ChkFumatore, m_inputs->ChkFumatoreSource),
                                      std::pair(m_inputs->ChkDiabetico, m_inputs->ChkDiabeticoSource),
                                      std::pair(m_inputs->ChkIpertens, m_inputs->ChkIpertensSource)}) {
        makeQuiet(source);
        connect(box, &QCheckBox::toggled, this, [this, label = source] {
            showSource(label, {});
            inputsChanged();
        });
    }
    showHint(QStringLiteral(
                 "Valori ammessi: pressione %1–%2, colesterolemia %3–%4, HDL %5–%6. Si propongono quelli "
                 "degli ultimi 3 mesi.")
                 .arg(systolicRangeMmHg.least)
                 .arg(systolicRangeMmHg.most)
                 .arg(totalCholesterolRangeMgDl.least)
                 .arg(totalCholesterolRangeMgDl.most)
                 .arg(hdlRangeMgDl.least)
                 .arg(hdlRangeMgDl.most));
    inputsComplete();
}

Rischio_Cardio::~Rischio_Cardio() = default;

void Rischio_Cardio::load()
{
    m_risk = 0;
    EvaluationForm::load();
}

void Rischio_Cardio::unloading()
{
    handBack(QStringLiteral("pctRischio"), m_risk);
}

void Rischio_Cardio::proposeBox(QCheckBox *box, QLabel *source, Condition (*read)(dao::Database &, qint32))
{
    Condition condition;
    const bool wasRead = guarded([&] { condition = read(m_state.clinical(), m_state.header.patientCode); });
    box->setChecked(condition.present);
    showSource(source, condition.source);
    if (!wasRead)
        showUnread(source);
}

void Rischio_Cardio::propose()
{
    const QDate limit = riskProposalLimit(m_state.clock.today());
    m_inputs->ChkIpertens->setChecked(false);
    showSource(m_inputs->ChkIpertensSource, {});
    proposeBox(m_inputs->ChkDiabetico, m_inputs->ChkDiabeticoSource, readDiabetes);
    proposeBox(m_inputs->ChkFumatore, m_inputs->ChkFumatoreSource, readSmoking);
    proposeValue(m_inputs->me_pas, QStringLiteral("misurata il %1"),
                 [&](dao::Database &clinical, qint32 patientCode) {
                     return readRecentSystolic(clinical, patientCode, limit);
                 });
    const auto proposeResult = [&](NumericEdit *edit, const QString &examCode, WholeRange range) {
        proposeValue(edit, QStringLiteral("esame del %1"), [&](dao::Database &clinical, qint32 patientCode) {
            return readRecentResult(clinical, patientCode, examCode, limit, range);
        });
    };
    proposeResult(m_inputs->me_col, QStringLiteral("90.14.3"), totalCholesterolRangeMgDl);
    proposeResult(m_inputs->me_hdl, QStringLiteral("90.14.1"), hdlRangeMgDl);
}

std::optional<int> Rischio_Cardio::inRange(NumericEdit *edit, WholeRange range, const QString &message)
{
    const int value = wholeNumber(edit->number());
    if (range.contains(value))
        return value;
    m_state.prompts.ask({windowTitle(), message, PromptIcon::None, {PromptButton::Ok}, PromptButton::Ok});
    edit->setFocus();
    edit->selectAll();
    return std::nullopt;
}

void Rischio_Cardio::compute()
{
    if (!required(m_inputs->me_pas, QStringLiteral("Inserire il valore della pressione arteriosa sistolica!"))
        || !required(m_inputs->me_col, QStringLiteral("Inserire il valore della colesterolemia totale!"))
        || !required(m_inputs->me_hdl, QStringLiteral("Inserire il valore della HDL-colesterolemia!")))
        return;
    const auto systolic =
        inRange(m_inputs->me_pas, systolicRangeMmHg,
                QStringLiteral("La pressione arteriosa sistolica deve essere compresa tra 90 e 200 mmHg"));
    if (!systolic)
        return;
    const auto cholesterol =
        inRange(m_inputs->me_col, totalCholesterolRangeMgDl,
                QStringLiteral("La colesterolemia totale deve essere compresa tra 130 e 320 mg/dl"));
    if (!cholesterol)
        return;
    const auto hdl = inRange(m_inputs->me_hdl, hdlRangeMgDl,
                             QStringLiteral("La HDL-colesterolemia deve essere compresa tra 20 e 100 mg/dl"));
    if (!hdl)
        return;

    m_computed.ageYears = isAgeKnown() ? std::optional(int(ageYears())) : std::nullopt;
    m_computed.systolicMmHg = *systolic;
    m_computed.totalCholesterolMgDl = *cholesterol;
    m_computed.hdlMgDl = *hdl;
    m_computed.smoker = m_inputs->ChkFumatore->isChecked();
    m_computed.diabetic = m_inputs->ChkDiabetico->isChecked();
    m_computed.treatedHypertension = m_inputs->ChkIpertens->isChecked();
    m_risk = CalcolaRCV(riskRow(sexText()), int(ageYears()), m_computed.smoker, *systolic, *cholesterol, *hdl,
                        m_computed.diabetic, m_computed.treatedHypertension);
    m_computed.risk = m_risk;
    setSavable(riskAges.contains(referenceAge()) || wantsToContinueAtThisAge());
    showRisk(m_risk, {});
    // What the numbers do not show of themselves.
    QStringList remarks{birthRemark(), sexRemark()};
    remarks.removeAll(QString());
    showStatus(remarks.join(u' '), true);
    if (chartAges.contains(int(ageYears())))
        showRisk(m_risk, chartLine());
}

bool Rischio_Cardio::wantsToContinueAtThisAge()
{
    return m_state.prompts.ask(
               {QStringLiteral("Attenzione"),
                QStringLiteral("Il paziente ha %1 anni.\n"
                               "Il calcolo del rischio cardiovascolare è da considerarsi\n"
                               "valido se effettuato per pazienti di età compresa tra 35 e 69 anni.\n"
                               "\n"
                               "Si desidera continuare?")
                    .arg(referenceAge()),
                PromptIcon::Warning,
                {PromptButton::Yes, PromptButton::No},
                PromptButton::Yes})
           == PromptButton::Yes;
}

QString Rischio_Cardio::chartLine()
{
    const auto band =
        readChartBand(m_state.clinical(), sex(), int(ageYears()), m_computed.diabetic, m_computed.smoker,
                      int(*m_computed.systolicMmHg), int(*m_computed.totalCholesterolMgDl));
    const auto text = band ? chartBandText(*band) : std::nullopt;
    if (!text) {
        m_state.prompts.warn(QStringLiteral("Errore nelle tabelle!"));
        return {};
    }
    if (*band == 0)
        setSavable(false);
    return QStringLiteral("Carta del rischio:") + *text;
}

QString Rischio_Cardio::withoutSex() const
{
    return QStringLiteral("l'equazione usa i coefficienti maschili%1")
        .arg(chartAges.contains(int(ageYears())) ? QStringLiteral(", la carta le tabelle femminili")
                                                 : QString());
}

QString Rischio_Cardio::withoutBirth() const
{
    return QStringLiteral("il calcolo usa 0 anni");
}

QString Rischio_Cardio::ageBand(int age) const
{
    const auto outside = [](WholeRange ages, const QString &of) {
        return QStringLiteral("fuori dai %1–%2 %3").arg(ages.least).arg(ages.most).arg(of);
    };
    // Where the age of the region's own day decides, the date changes nothing.
    if (!referenceDay(regionCode()).isValid() && !riskAges.contains(age))
        return outside(riskAges, QStringLiteral("dell'equazione"));
    return chartAges.contains(age) ? QString() : outside(chartAges, QStringLiteral("della carta"));
}

QString Rischio_Cardio::inputRemark(const NumericEdit *edit) const
{
    return edit == m_inputs->me_hdl ? hdlRemark(edit->number(), m_inputs->me_col->number()) : QString();
}

void Rischio_Cardio::showRisk(const std::optional<double> &risk, const QString &chart)
{
    showResult(QStringLiteral("prob. = ") + (risk ? jet::formatNumber(*risk, u"0.0%") : QString()), chart);
}

QList<HistoryRow> Rischio_Cardio::history()
{
    return readCardiovascularHistory(m_state.clinical(), m_state.header.patientCode);
}

bool Rischio_Cardio::showSaved(const QDateTime &when)
{
    const auto saved = readEvaluation<CardiovascularEvaluation>(m_state.clinical(), storedAs(),
                                                                m_state.header.patientCode, when);
    if (!saved)
        return false;
    showStored(m_inputs->me_pas, optionalText(saved->systolicMmHg));
    showStored(m_inputs->me_col, optionalText(saved->totalCholesterolMgDl));
    m_inputs->ChkFumatore->setChecked(saved->smoker);
    m_inputs->ChkDiabetico->setChecked(saved->diabetic);
    m_inputs->ChkIpertens->setChecked(saved->treatedHypertension);
    for (QLabel *const source : {m_inputs->ChkFumatoreSource, m_inputs->ChkDiabeticoSource})
        showSource(source, {});
    showNotReloaded(m_inputs->me_hdl, m_inputs->me_hdlSource);
    showRisk(saved->risk, {});
    return true;
}

WriteResult Rischio_Cardio::save(const QDateTime &when, bool isNew, EvaluationVersions &versions)
{
    return saveCardiovascular(m_state, when, m_computed, isNew, versions);
}

void Rischio_Cardio::afterSave()
{
    newEvaluation();
}

} // namespace clivara
