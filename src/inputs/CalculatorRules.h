// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDate>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <optional>

// The formulas of the calculators. Units stand in the names. A result that no number can express (a division
// by zero, the power of an age of 0) is empty; no result is ever infinite or not a number. Values that make
// no medical sense (negative, far too large) are computed as they are: it is the doctor who reads them.
namespace clivara {

enum class Sex { Unknown, Male, Female };

// "M" or "F" as the registry keeps it, in either case and with blanks around it. Rows of older programs have
// lower-case letters: they mean the same, and taking "f" as unknown would give a woman a man's filtration
// rate.
Sex sexFromText(QStringView text);

// The expected renal function is shown from this age on, in years.
constexpr int expectedFunctionFromAge = 40;

// Creatinine clearance in ml/min: (140 - age) * weight / (72 * creatinine), times 0.85 for women.
// Cockcroft DW, Gault MH. Nephron 1976;16:31-41. Empty for an unknown sex.
std::optional<double> cockcroftClearanceMlMin(Sex sex, double ageYears, double weightKg,
                                              double creatinineMgDl);

// Renal function expected at an age, in ml/min: 140 - age for men, 130 - age for women. Empty below
// expectedFunctionFromAge and for an unknown sex.
std::optional<double> expectedClearanceMlMin(Sex sex, double ageYears);

// LDL cholesterol in mg/dl: total - (HDL + triglycerides / 5), triglycerides rounded to a whole number first,
// halves to even. Friedewald WT, Levy RI, Fredrickson DS. Clin Chem 1972;18:499-502. Negative when the
// triglycerides are very high; there is no upper limit on them.
std::optional<double> ldlMgDl(double totalMgDl, double hdlMgDl, double triglyceridesMgDl);

// Total cholesterol over HDL cholesterol.
std::optional<double> riskRatio(double totalMgDl, double hdlMgDl);

// True from 5.0 on for men, from 4.5 on for women; never for an unknown sex.
bool isRatioHigh(Sex sex, double ratio);

// Glomerular filtration rate in ml/min per 1.73 m²: 186 * creatinine^-1.154 * age^-0.203, times 0.742 for
// women, times 1.212 for patients of African origin. Simplified four-variable MDRD equation: Levey AS, Greene
// T, Kusek JW, Beck GJ. J Am Soc Nephrol 2000;11:A0828. Empty for an age or a creatinine of 0 or below.
std::optional<double> mdrdGfrMlMin(Sex sex, double ageYears, double creatinineMgDl, bool africanOrigin);

// Laboratory results and measurements older than this are not proposed.
constexpr int proposalDays = 366;
// True when a result of that day may still be proposed; a result without a date counts as very old.
bool isRecent(QDate result, QDate today);
// The first day that is recent.
QDate recentSince(QDate today);

// The other spellings of an exam's code: laboratories write its last group with and without a leading zero,
// "90.16.4" and "90.16.04".
QStringList otherSpellings(const QString &examCode);

// True when a result's text holds a digit: "<0.5", but not "non eseguito".
bool holdsNumber(const QString &result);

} // namespace clivara
