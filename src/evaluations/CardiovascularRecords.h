// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "evaluations/CardiovascularRules.h"
#include "evaluations/EvaluationRecords.h"
#include "inputs/CalculatorRecords.h"
#include "inputs/CalculatorRules.h"

// The evaluations of the cardiovascular risk (Rischio_Cardio) and what is proposed for a new one. Except for saving,
// every function throws dao::Error.
namespace clivara {

// "12.5%" of a fraction; empty for none.
QString percentText(const std::optional<double> &fraction);

struct CardiovascularEvaluation {
    std::optional<int> ageYears; // empty when unknown
    std::optional<double> risk; // a fraction
    std::optional<double> systolicMmHg, totalCholesterolMgDl, hdlMgDl;
    bool smoker = false;
    bool diabetic = false;
    bool treatedHypertension = false;

    static constexpr auto fields()
    {
        using Evaluation = CardiovascularEvaluation;
        return std::tuple{
            RecordField{"pct_rischio", &Evaluation::risk, "Rischio", {}, {}, percentText},
            RecordField{"eta", &Evaluation::ageYears, "Età"},
            RecordField{"pressione", &Evaluation::systolicMmHg, "Pressione sistolica"},
            RecordField{"colesterolo", &Evaluation::totalCholesterolMgDl, "Colesterolemia totale"},
            RecordField{"hdl", &Evaluation::hdlMgDl, "HDL-colesterolemia"},
            RecordField{"fumatore", &Evaluation::smoker, "Fumatore"},
            RecordField{"diabetico", &Evaluation::diabetic, "Diabetico"},
            RecordField{"ipertens", &Evaluation::treatedHypertension, "Ipertensione in trattamento"},
        };
    }
};
const StoredEvaluation &storedCardiovascular();

QList<HistoryRow> readCardiovascularHistory(dao::Database &clinical, qint32 patientCode);
WriteResult saveCardiovascular(WorkingState &state, const QDateTime &when,
                               const CardiovascularEvaluation &evaluation, bool isNew,
                               EvaluationVersions &versions);

// A condition that the chart knows of the patient, and in Italian where that stands.
struct Condition {
    bool present = false;
    QString source;
};
// Diabetes: among the chronic diseases, in the remote history, among the patient's diagnoses. None has a date.
Condition readDiabetes(dao::Database &clinical, qint32 patientCode);
// A smoker by any of the lifestyle questionnaires, however old.
Condition readSmoking(dao::Database &clinical, qint32 patientCode);

// The newest systolic pressure since a day that lies in the equation's range.
Finding readRecentSystolic(dao::Database &clinical, qint32 patientCode, QDate since);
// The newest result of an exam since a day that, as a whole number, lies in a range: that whole number.
Finding readRecentResult(dao::Database &clinical, qint32 patientCode, const QString &examCode, QDate since,
                         WholeRange range);

// The band of the risk chart, 0 for a row without one; empty when the chart has no row for such a patient.
std::optional<int> readChartBand(dao::Database &clinical, Sex sex, int ageYears, bool diabetic, bool smoker,
                                 int systolicMmHg, int totalCholesterolMgDl);

} // namespace clivara
