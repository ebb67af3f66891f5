// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "evaluations/EvaluationRecords.h"
#include "evaluations/MetabolicRules.h"
#include "inputs/CalculatorRecords.h"

// The evaluations of the metabolic syndrome (SindrMetabolica) and what is proposed for a new one. Except for saving,
// every function throws dao::Error.
namespace clivara {

// "SI" or "NO", as the history has it.
QString verdictText(const int &verdict);

// HDL is not stored.
struct MetabolicEvaluation {
    int verdict = 0; // 1 when the syndrome was present
    std::optional<double> waistCm, systolicMmHg, diastolicMmHg, glucoseMgDl, triglyceridesMgDl;

    static constexpr auto fields()
    {
        using Evaluation = MetabolicEvaluation;
        return std::tuple{
            RecordField{"valutazione", &Evaluation::verdict, "Sindrome metabolica", {}, {}, verdictText},
            RecordField{"circAdd", &Evaluation::waistCm, "Circonferenza addominale"},
            RecordField{"pressSist", &Evaluation::systolicMmHg, "Pressione sistolica"},
            RecordField{"pressDiast", &Evaluation::diastolicMmHg, "Pressione diastolica"},
            RecordField{"glicemia", &Evaluation::glucoseMgDl, "Glicemia"},
            RecordField{"trigliceridi", &Evaluation::triglyceridesMgDl, "Trigliceridi"},
        };
    }
};
const StoredEvaluation &storedMetabolic();

QList<HistoryRow> readMetabolicHistory(dao::Database &clinical, qint32 patientCode);
WriteResult saveMetabolic(WorkingState &state, const QDateTime &when, const MetabolicEvaluation &evaluation,
                          bool isNew, EvaluationVersions &versions);

// The thresholds of the region ("03") that came into force last; empty when it has none, and for an empty code.
std::optional<MetabolicThresholds> readMetabolicThresholds(dao::Database &clinical,
                                                           const QString &regionCode);

// The waist of the newest objective examination that is recent on `today`; empty when it does not hold one.
Finding readRecentWaist(dao::Database &clinical, qint32 patientCode, QDate today);
// The newest result of an exam that is recent on `today`; empty when that one is blank.
Finding readRecentMetabolicResult(dao::Database &clinical, qint32 patientCode, const QString &examCode,
                                  QDate today);
// Those of the newest measurement that is recent on `today`, each empty when it was not taken.
struct PressureProposals {
    Finding systolic, diastolic;
};
PressureProposals readRecentPressures(dao::Database &clinical, qint32 patientCode, QDate today);

} // namespace clivara
