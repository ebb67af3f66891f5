// SPDX-License-Identifier: Apache-2.0
#include "evaluations/MetabolicRecords.h"

#include "dao/Dao.h"
#include "inputs/CalculatorRules.h"
#include "values/JetValues.h"

namespace clivara {

namespace {

std::unique_ptr<dao::Recordset> open(dao::Database &clinical, const dao::Query &query)
{
    return clinical.OpenRecordset(query, dao::RecordsetType::Snapshot);
}

} // namespace

QList<HistoryRow> readMetabolicHistory(dao::Database &clinical, qint32 patientCode)
{
    return readHistory(
        clinical,
        QStringLiteral(
            "SELECT format(data_val,'dd/mm/yyyy'), IIF((valutazione=1), 'SI', 'NO') As valutaz, "
            "data_val, valutazione FROM SindrMetabolica WHERE cod_paz = [patient] ORDER BY data_val Desc"),
        patientCode);
}

WriteResult saveMetabolic(WorkingState &state, const QDateTime &when, const MetabolicEvaluation &evaluation,
                          bool isNew, EvaluationVersions &versions)
{
    const auto fill = [&](dao::Recordset &row) { writeFields(row, evaluation); };
    return saveEvaluation(state, storedMetabolic(), when, isNew, fill, versions);
}

QString verdictText(const int &verdict)
{
    return verdict == 1 ? QStringLiteral("SI") : QStringLiteral("NO");
}

const StoredEvaluation &storedMetabolic()
{
    static const auto stored = storedEvaluation<MetabolicEvaluation>(QStringLiteral("SindrMetabolica"),
                                                                     MetabolicSyndrome, Existing::Replace);
    return stored;
}

std::optional<MetabolicThresholds> readMetabolicThresholds(dao::Database &clinical, const QString &regionCode)
{
    bool isNumber = false;
    const int region = regionCode.toInt(&isNumber);
    if (!isNumber)
        return std::nullopt;
    const auto row =
        open(clinical,
             {QStringLiteral("select * from TabParamSM where (codRegione=[region]) order by data_reg desc"),
              {{"region", region}}});
    if (row->Eof())
        return std::nullopt;
    MetabolicThresholds thresholds;
    thresholds.since = row->Fields(QStringLiteral("data_reg")).date().date();
    thresholds.waistWomenCm = optionalNumber(*row, QStringLiteral("circAdd_d"));
    thresholds.waistMenCm = optionalNumber(*row, QStringLiteral("circAdd_u"));
    thresholds.triglyceridesMgDl = optionalNumber(*row, QStringLiteral("trigliceridi"));
    thresholds.hdlWomenMgDl = optionalNumber(*row, QStringLiteral("hdl_d"));
    thresholds.hdlMenMgDl = optionalNumber(*row, QStringLiteral("hdl_u"));
    thresholds.glucoseMgDl = optionalNumber(*row, QStringLiteral("glicemia"));
    thresholds.systolicMmHg = optionalNumber(*row, QStringLiteral("pa_sist"));
    thresholds.diastolicMmHg = optionalNumber(*row, QStringLiteral("pa_diast"));
    return thresholds;
}

Finding readRecentWaist(dao::Database &clinical, qint32 patientCode, QDate today)
{
    const auto newest =
        open(clinical, {QStringLiteral("SELECT * FROM ESAME_OB WHERE (TIPO_DATI LIKE 'A') AND "
                                       "(COD_PAZ = [patient]) order by data_reg desc, chiave desc"),
                        {{"patient", patientCode}}});
    if (newest->Eof())
        return {};
    const QDate date = newest->Fields(QStringLiteral("data_reg")).date().date();
    if (!isRecent(date, today))
        return {};
    const auto cut = cutMeasurement(clinical, QStringLiteral("circonf_addom"),
                                    newest->Fields(QStringLiteral("dati_paz")).text());
    const QString stored = cut.value_or(QString()).trimmed();
    const double waistCm = jet::leadingNumber(stored);
    // Blanks and zeros stand for a waist that was not measured. Any other text is one that cannot be read.
    if (waistCm == 0 && (stored.isEmpty() || jet::numberFromText(stored)))
        return {};
    return {Proposal{jet::numberText(waistCm), date, stored, {}, {}}, {}, {}, {}};
}

Finding readRecentMetabolicResult(dao::Database &clinical, qint32 patientCode, const QString &examCode,
                                  QDate today)
{
    return scanResults(clinical, patientCode, examCode, recentSince(today), false,
                       [today](QDate date, const QString &stored) {
                           return isRecent(date, today) && !stored.isEmpty() ? Scan::Take : Scan::Stop;
                       });
}

PressureProposals readRecentPressures(dao::Database &clinical, qint32 patientCode, QDate today)
{
    const auto newest = open(
        clinical, {QStringLiteral("SELECT * FROM esa_ob WHERE (cod_paz = [patient]) ORDER BY data_ob DESC"),
                   {{"patient", patientCode}}});
    if (newest->Eof())
        return {};
    const QDate date = newest->Fields(QStringLiteral("data_ob")).date().date();
    if (!isRecent(date, today))
        return {};
    const auto pressure = [&](const QString &field) -> Finding {
        const auto number = optionalNumber(*newest, field);
        if (!number)
            return {};
        return {Proposal{jet::numberText(*number), date, jet::numberText(*number), {}, {}}, {}, {}, {}};
    };
    return {pressure(QStringLiteral("presmax")), pressure(QStringLiteral("presmin"))};
}

} // namespace clivara
