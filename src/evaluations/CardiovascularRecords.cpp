// SPDX-License-Identifier: Apache-2.0
#include "evaluations/CardiovascularRecords.h"

#include "dao/Dao.h"
#include "values/JetValues.h"

namespace clivara {

namespace {

std::unique_ptr<dao::Recordset> open(dao::Database &clinical, const dao::Query &query)
{
    return clinical.OpenRecordset(query, dao::RecordsetType::Snapshot);
}

} // namespace

QList<HistoryRow> readCardiovascularHistory(dao::Database &clinical, qint32 patientCode)
{
    return readHistory(
        clinical,
        QStringLiteral(
            "SELECT format(data_val,'dd/mm/yyyy'), format(pct_rischio,'0.0%'), data_val, pct_rischio "
            "FROM Rischio_Cardio WHERE cod_paz = [patient] ORDER BY data_val Desc"),
        patientCode);
}

WriteResult saveCardiovascular(WorkingState &state, const QDateTime &when,
                               const CardiovascularEvaluation &evaluation, bool isNew,
                               EvaluationVersions &versions)
{
    const auto fill = [&](dao::Recordset &row) { writeFields(row, evaluation); };
    return saveEvaluation(state, storedCardiovascular(), when, isNew, fill, versions);
}

QString percentText(const std::optional<double> &fraction)
{
    return fraction ? jet::formatNumber(*fraction, u"0.0%") : QString();
}

const StoredEvaluation &storedCardiovascular()
{
    static const auto stored = storedEvaluation<CardiovascularEvaluation>(
        QStringLiteral("Rischio_Cardio"), CardiovascularRisk, Existing::Refuse);
    return stored;
}

Condition readDiabetes(dao::Database &clinical, qint32 patientCode)
{
    const std::pair<QString, QString> places[]{
        {QStringLiteral(
             "SELECT * FROM cronpat WHERE cod_paz = [patient] AND (cod_pat = 32 OR cod_pat = 167)"),
         QStringLiteral("dalle patologie croniche, senza data")},
        {QStringLiteral("select * from pat_rem2 where cod_paz = [patient] and num_rem = 2 "
                        "AND (progre = '64801' or left(progre,4) = '250.')"),
         QStringLiteral("dall'anamnesi remota, senza data")},
        {QStringLiteral("select * from patopers where cod_paz = [patient] "
                        "AND (cod_mal = '64801' or left(cod_mal,4) = '250.')"),
         QStringLiteral("dalle diagnosi del paziente, senza data")},
    };
    for (const auto &[sql, source] : places) {
        if (!open(clinical, {sql, {{"patient", patientCode}}})->Eof())
            return {true, source};
    }
    return {false, QStringLiteral("nessuna diagnosi in cartella")};
}

Condition readSmoking(dao::Database &clinical, qint32 patientCode)
{
    Condition condition{false, QStringLiteral("non risulta dai questionari")};
    QDate newest;
    for (const auto rows =
             open(clinical, {QStringLiteral("SELECT * FROM Esame_OB WHERE (cod_paz = [patient]) AND "
                                            "(tipo_dati = 'H') and (Val(Mid(dati_paz, 96, 2)) = 3)"),
                             {{"patient", patientCode}}});
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
             open(clinical, {QStringLiteral("SELECT * FROM esa_ob WHERE (cod_paz = [patient]) AND "
                                            "(data_ob >= [since]) ORDER BY data_ob DESC"),
                             {{"patient", patientCode}, {"since", since}}});
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
    const auto row = open(
        clinical,
        {QStringLiteral(
             "SELECT * FROM Carta_Rischio WHERE sessoM = [male] AND [age] >= eta_min AND [age] <= eta_max "
             "AND diabete = [diabetic] AND fumatore = [smoker] AND [pressure] >= pressione_min "
             "AND [pressure] <= pressione_max AND [cholesterol] >= colesterolo_min "
             "AND [cholesterol] <= colesterolo_max"),
         {{"male", sex == Sex::Male},
          {"age", ageYears},
          {"diabetic", diabetic},
          {"smoker", smoker},
          {"pressure", systolicMmHg},
          {"cholesterol", totalCholesterolMgDl}}});
    return row->Eof() ? std::nullopt : std::optional(int(row->Fields(QStringLiteral("Livello")).number()));
}

} // namespace clivara
