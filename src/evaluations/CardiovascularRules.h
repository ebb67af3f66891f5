// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDate>
#include <QString>
#include <QStringView>
#include <optional>

// The ten-year probability of a first major cardiovascular event, and the bands of the risk chart.
namespace clivara {

// Whole numbers from `least` to `most`, both included.
struct WholeRange {
    int least = 0;
    int most = 0;
    bool contains(int value) const { return least <= value && value <= most; }
};

// What the equation takes.
constexpr WholeRange systolicRangeMmHg{90, 200};
constexpr WholeRange totalCholesterolRangeMgDl{130, 320};
constexpr WholeRange hdlRangeMgDl{20, 100};
// The ages for which the equation is valid, and those of the chart, in years.
constexpr WholeRange riskAges{35, 69};
constexpr WholeRange chartAges{40, 69};

// The row of coefficients for a sex as the registry keeps it: 1 for women ("F"), 0 for any other text.
int riskRow(QStringView sex);

// A typed number as the equation takes it: rounded to a whole number, halves to even, held within what an int can
// express.
int wholeNumber(double value);

// The risk as a fraction (0.123 is 12.3 %): 1 - S ^ exp(score), score being the sum of coefficient * input over the
// inputs, less the centring constant of the sex, and S the survival of ten years at the average score: a proportional
// hazards model with coefficients by sex. `sexRow` is 0 for men and 1 for women; smoker, diabetic and
// treatedHypertension are 0 or 1. Nothing is checked here: outside the ranges above the equation is extrapolated.
double CalcolaRCV(int sexRow, int ageYears, int smoker, int systolicMmHg, int totalCholesterolMgDl,
                  int hdlMgDl, int diabetic, int treatedHypertension);

// The day on which the patient's age counts for the validity, instead of today, in the region of this code; null in
// every other region.
QDate referenceDay(QStringView regionCode);

// The text for a band of the chart: 1 to 6, and 0 for a patient whom it does not classify. Empty for any other number.
std::optional<QString> chartBandText(int level);

// Values before this day are too old to be proposed: three months before today, the day clipped to the month's end.
QDate riskProposalLimit(QDate today);

} // namespace clivara
