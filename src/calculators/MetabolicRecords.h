// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "calculators/CalculatorRecords.h"
#include "calculators/EvaluationRecords.h"
#include "calculators/MetabolicRules.h"

// The evaluations of the metabolic syndrome (SindrMetabolica) and what is proposed for a new one. Except for saving,
// every function throws dao::Error.
namespace clivara {

// HDL is not stored.
struct MetabolicEvaluation {
    int verdict = 0; // 1 when the syndrome was present
    std::optional<double> waistCm, systolicMmHg, diastolicMmHg, glucoseMgDl, triglyceridesMgDl;
};

QList<HistoryRow> readMetabolicHistory(dao::Database &clinical, qint32 patientCode);
// Empty when there is no such evaluation (any more). A row without a verdict counts as 0.
std::optional<MetabolicEvaluation> readMetabolic(dao::Database &clinical, qint32 patientCode,
                                                 const QDateTime &when);
// An evaluation of the same date is overwritten.
SaveOutcome saveMetabolic(WorkingState &state, const QDateTime &when, const MetabolicEvaluation &evaluation,
                          EvaluationVersions &versions);
const StoredEvaluation &storedMetabolic();

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
