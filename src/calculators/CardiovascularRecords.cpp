// SPDX-License-Identifier: Apache-2.0
#include "calculators/CardiovascularRecords.h"

#include "chart/SharedWrites.h"
#include "dao/Dao.h"
#include "values/JetValues.h"

namespace clivara {

namespace {

const auto riskTable = QStringLiteral("Rischio_Cardio");

std::unique_ptr<dao::Recordset> open(dao::Database &clinical, const QString &sql)
{
    return clinical.OpenRecordset(sql, dao::RecordsetType::Snapshot);
}

bool isSet(dao::Recordset &row, const QString &field)
{
    return row.Fields(field).number() != 0;
}

QString jetBoolean(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

} // namespace

QList<HistoryRow> readCardiovascularHistory(dao::Database &clinical, qint32 patientCode)
{
    return readHistory(
        clinical,
        QStringLiteral(
            "SELECT format(data_val,'dd/mm/yyyy'), format(pct_rischio,'0.0%'), data_val, pct_rischio "
            "FROM Rischio_Cardio WHERE cod_paz = %1 ORDER BY data_val Desc")
            .arg(patientCode));
}

std::optional<CardiovascularEvaluation> readCardiovascular(dao::Database &clinical, qint32 patientCode,
                                                           const QDateTime &when)
{
    const auto row = open(clinical, evaluationQuery(riskTable, patientCode, when));
    if (row->Eof())
        return std::nullopt;
    CardiovascularEvaluation evaluation;
    if (const auto age = optionalNumber(*row, QStringLiteral("eta")))
        evaluation.ageYears = int(*age);
    evaluation.risk = optionalNumber(*row, QStringLiteral("pct_rischio"));
    evaluation.systolicMmHg = optionalNumber(*row, QStringLiteral("pressione"));
    evaluation.totalCholesterolMgDl = optionalNumber(*row, QStringLiteral("colesterolo"));
    evaluation.hdlMgDl = optionalNumber(*row, QStringLiteral("hdl"));
    evaluation.smoker = isSet(*row, QStringLiteral("fumatore"));
    evaluation.diabetic = isSet(*row, QStringLiteral("diabetico"));
    evaluation.treatedHypertension = isSet(*row, QStringLiteral("ipertens"));
    return evaluation;
}

SaveOutcome saveCardiovascular(WorkingState &state, const QDateTime &when,
                               const CardiovascularEvaluation &evaluation, Existing existing,
                               EvaluationVersions &versions)
{
    const auto fill = [&evaluation](dao::Recordset &row) {
        row.Fields(QStringLiteral("eta"))
            .setValue(evaluation.ageYears ? QVariant(*evaluation.ageYears) : QVariant());
        row.Fields(QStringLiteral("pct_rischio")).setValue(numberValue(evaluation.risk));
        row.Fields(QStringLiteral("pressione")).setValue(numberValue(evaluation.systolicMmHg));
        row.Fields(QStringLiteral("colesterolo")).setValue(numberValue(evaluation.totalCholesterolMgDl));
        row.Fields(QStringLiteral("hdl")).setValue(numberValue(evaluation.hdlMgDl));
        row.Fields(QStringLiteral("fumatore")).setValue(evaluation.smoker);
        row.Fields(QStringLiteral("diabetico")).setValue(evaluation.diabetic);
        row.Fields(QStringLiteral("ipertens")).setValue(evaluation.treatedHypertension);
    };
    return saveEvaluation(state, storedCardiovascular(), when, existing, fill, versions);
}

const StoredEvaluation &storedCardiovascular()
{
    static const StoredEvaluation stored{
        riskTable,
        CardiovascularRisk,
        {{QStringLiteral("pct_rischio"), QStringLiteral("Rischio"),
          [](const QVariant &risk) {
              return risk.isValid() ? jet::formatNumber(risk.toDouble(), u"0.0%") : QString();
          }},
         {QStringLiteral("eta"), QStringLiteral("Età"), numberAsText},
         {QStringLiteral("pressione"), QStringLiteral("Pressione sistolica"), numberAsText},
         {QStringLiteral("colesterolo"), QStringLiteral("Colesterolemia totale"), numberAsText},
         {QStringLiteral("hdl"), QStringLiteral("HDL-colesterolemia"), numberAsText},
         {QStringLiteral("fumatore"), QStringLiteral("Fumatore"), yesOrNo},
         {QStringLiteral("diabetico"), QStringLiteral("Diabetico"), yesOrNo},
         {QStringLiteral("ipertens"), QStringLiteral("Ipertensione in trattamento"), yesOrNo}}};
    return stored;
}

Condition readDiabetes(dao::Database &clinical, qint32 patientCode)
{
    const QString code = QString::number(patientCode);
    const std::pair<QString, QString> places[]{
        {QStringLiteral("SELECT * FROM cronpat WHERE cod_paz = ") + code
             + QStringLiteral(" AND (cod_pat = 32 OR cod_pat = 167)"),
         QStringLiteral("dalle patologie croniche, senza data")},
        {QStringLiteral("select * from pat_rem2 where cod_paz= ") + code
             + QStringLiteral(" and num_rem = 2 AND (progre = '64801' or left(progre,4) = '250.')"),
         QStringLiteral("dall'anamnesi remota, senza data")},
        {QStringLiteral("select * from patopers where cod_paz= ") + code
             + QStringLiteral("AND (cod_mal = '64801' or left(cod_mal,4) = '250.')"),
         QStringLiteral("dalle diagnosi del paziente, senza data")},
    };
    for (const auto &[query, source] : places) {
        if (!open(clinical, query)->Eof())
            return {true, source};
    }
    return {false, QStringLiteral("nessuna diagnosi in cartella")};
}

Condition readSmoking(dao::Database &clinical, qint32 patientCode)
{
    Condition condition{false, QStringLiteral("non risulta dai questionari")};
    QDate newest;
    for (const auto rows = open(clinical, QStringLiteral("SELECT * FROM Esame_OB WHERE (cod_paz = ")
                                              + QString::number(patientCode)
                                              + QStringLiteral(") AND (tipo_dati = 'H') and "
                                                               "(Val(Mid(dati_paz, 96, 2)) = 3)"));
         !rows->Eof(); rows->MoveNext()) {
        condition.present = true;
        newest = std::max(newest, rows->Fields(QStringLiteral("data_reg")).date().date());
    }
    if (condition.present)
        condition.source = newest.isValid() ? QStringLiteral("questionario del ") + jet::slashedDate(newest)
                                            : QStringLiteral("dal questionario, senza data");
    return condition;
}

Finding readRecentSystolic(dao::Database &clinical, qint32 patientCode, QDate since)
{
    Finding finding;
    finding.since = since;
    QDateTime skippedAt;
    for (const auto rows =
             open(clinical, QStringLiteral("SELECT * FROM esa_ob WHERE (cod_paz = ")
                                + QString::number(patientCode) + QStringLiteral(") AND (data_ob >= CDATE('")
                                + jet::slashedDate(since) + QStringLiteral("')) ORDER BY data_ob DESC"));
         !rows->Eof() && !finding.proposal; rows->MoveNext()) {
        const auto systolic = optionalNumber(*rows, QStringLiteral("presmax"));
        if (!systolic || *systolic == 0) // not measured
            continue;
        const QDateTime when = rows->Fields(QStringLiteral("data_ob")).date();
        const QString text = jet::numberText(*systolic);
        if (systolicRangeMmHg.contains(int(*systolic))) {
            finding.proposal = {text, when.date(), text, {}, {}};
            if (skippedAt == when) // nothing says which of the two was later
                finding.skipped.reset();
        } else if (!finding.skipped) {
            finding.skipped = {text, QStringLiteral("mmHg"), when.date(), {}};
            skippedAt = when;
        }
    }
    return finding;
}

Finding readRecentResult(dao::Database &clinical, qint32 patientCode, const QString &examCode, QDate since,
                         WholeRange range)
{
    auto found =
        scanResults(clinical, patientCode, examCode, since, true, [range](QDate, const QString &stored) {
            return range.contains(wholeNumber(jet::leadingNumber(stored))) ? Scan::Take : Scan::Skip;
        });
    if (found.proposal)
        found.proposal->text = QString::number(wholeNumber(jet::leadingNumber(found.proposal->stored)));
    return found;
}

std::optional<int> readChartBand(dao::Database &clinical, Sex sex, int ageYears, bool diabetic, bool smoker,
                                 int systolicMmHg, int totalCholesterolMgDl)
{
    const QString age = QString::number(ageYears);
    const QString pressure = QString::number(systolicMmHg);
    const QString cholesterol = QString::number(totalCholesterolMgDl);
    const auto row = open(
        clinical, QStringLiteral("SELECT * FROM Carta_Rischio WHERE sessoM = ") + jetBoolean(sex == Sex::Male)
                      + QStringLiteral(" AND ") + age + QStringLiteral(" >= eta_min  AND ") + age
                      + QStringLiteral("<= eta_max  AND diabete = ") + jetBoolean(diabetic)
                      + QStringLiteral(" AND fumatore = ") + jetBoolean(smoker) + QStringLiteral(" AND ")
                      + pressure + QStringLiteral(" >= pressione_min  AND ") + pressure
                      + QStringLiteral(" <= pressione_max  AND ") + cholesterol
                      + QStringLiteral(" >= colesterolo_min  AND ") + cholesterol
                      + QStringLiteral(" <= colesterolo_max"));
    return row->Eof() ? std::nullopt : std::optional(int(row->Fields(QStringLiteral("Livello")).number()));
}

} // namespace clivara
