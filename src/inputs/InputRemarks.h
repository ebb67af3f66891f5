// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "inputs/CalculatorRecords.h"

#include <QStringList>

// What the doctor is told of a value that is impossible, unlikely, or not what it looks like. A remark never
// keeps anything from being computed. Each line is a sentence in Italian, without a sign before it.
namespace clivara {

struct PlausibleRange {
    double least = 0;
    double most = 0;
    bool contains(double value) const { return least <= value && value <= most; }
};

// Limits of plausibility, not of health. They are this program's own: wide enough for any patient of a
// general practice, and narrow enough that a usual value in another unit lies outside. Of the molar units 1
// mg/dl of creatinine is 88.4 µmol/l, and 1 mmol/l is 38.67 mg/dl of cholesterol, 88.57 of triglycerides and
// 18.02 of glucose.
constexpr PlausibleRange plausibleAdultWeightKg{30, 300};
constexpr PlausibleRange plausibleWeightKg{2, 300}; // of children, and where the age is not known
constexpr PlausibleRange plausibleWaistCm{40, 200};
constexpr PlausibleRange plausibleSystolicMmHg{60, 260};
constexpr PlausibleRange plausibleDiastolicMmHg{30, 150};
constexpr PlausibleRange plausibleCreatinineMgDl{0.2, 20};
constexpr PlausibleRange plausibleTotalCholesterolMgDl{60, 600};
constexpr PlausibleRange plausibleHdlMgDl{10, 150};
constexpr PlausibleRange plausibleTriglyceridesMgDl{20, 2000};
constexpr PlausibleRange plausibleGlucoseMgDl{30, 600};

// Above this the formula for LDL is not valid, in mg/dl. Friedewald WT, Levy RI, Fredrickson DS. Clin Chem
// 1972;18:499-502.
constexpr double friedewaldTriglyceridesMgDl = 400;

constexpr int adultYears = 18;
constexpr int highestPlausibleAge = 120; // years
constexpr int earliestPlausibleYear = 1900; // of an evaluation or a birth

// Whether two texts name one unit: "mg/dL", "MG / DL" and "mg/100 ml" are "mg/dl".
bool isSameUnit(const QString &a, const QString &b);

// Empty when the value is plausible.
QString rangeRemark(double value, PlausibleRange range, const QString &unit);

// On values that cannot go together; a value of 0 is none. Empty when they can.
QString hdlRemark(double hdlMgDl, double totalMgDl);
QString friedewaldRemark(double totalMgDl, double hdlMgDl, double triglyceridesMgDl);
QString pressureRemark(double systolicMmHg, double diastolicMmHg);

// On what the records hold of an input.
struct FindingRemarks {
    QStringList lines;
    // The proposed number is not what was recorded: it was read only in part, or its unit is not the input's.
    // Whoever computes with it must have seen that.
    bool mustBeSeen = false;
};
FindingRemarks findingRemarks(const Finding &finding, const QString &unit, QDate today);

// On the date of an evaluation: of the future, before the birth (null when unknown), of an impossible year.
QString dateRemark(QDate day, QDate birth, QDate today);
// On the age at that date when it is not today's, which is the one that counts; empty when it is, and when
// either is unknown.
QString ageAtDateRemark(QDate day, QDate birth, QDate today);

} // namespace clivara
