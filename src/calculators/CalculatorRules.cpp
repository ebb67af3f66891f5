// SPDX-License-Identifier: Apache-2.0
#include "calculators/CalculatorRules.h"

#include "values/JetValues.h"

#include <cmath>

namespace clivara {

namespace {

std::optional<double> finite(double value)
{
    return std::isfinite(value) ? std::optional(value) : std::nullopt;
}

} // namespace

Sex sexFromText(QStringView text)
{
    const QStringView letter = text.trimmed();
    if (jet::sameText(letter, u"M"))
        return Sex::Male;
    return jet::sameText(letter, u"F") ? Sex::Female : Sex::Unknown;
}

std::optional<double> cockcroftClearanceMlMin(Sex sex, double ageYears, double weightKg,
                                              double creatinineMgDl)
{
    if (sex == Sex::Unknown)
        return std::nullopt;
    const double sexFactor = sex == Sex::Female ? 0.85 : 1.0;
    return finite((140 - ageYears) * weightKg * sexFactor / (72 * creatinineMgDl));
}

std::optional<double> expectedClearanceMlMin(Sex sex, double ageYears)
{
    if (sex == Sex::Unknown || ageYears < expectedFunctionFromAge)
        return std::nullopt;
    return (sex == Sex::Male ? 140 : 130) - ageYears;
}

std::optional<double> ldlMgDl(double totalMgDl, double hdlMgDl, double triglyceridesMgDl)
{
    return finite(totalMgDl - (hdlMgDl + jet::roundHalfToEven(triglyceridesMgDl) / 5.0));
}

std::optional<double> riskRatio(double totalMgDl, double hdlMgDl)
{
    return finite(totalMgDl / hdlMgDl);
}

bool isRatioHigh(Sex sex, double ratio)
{
    return (sex == Sex::Male && ratio >= 5.0) || (sex == Sex::Female && ratio >= 4.5);
}

std::optional<double> mdrdGfrMlMin(Sex sex, double ageYears, double creatinineMgDl, bool africanOrigin)
{
    double gfr = 186 * std::pow(creatinineMgDl, -1.154) * std::pow(ageYears, -0.203);
    if (sex == Sex::Female)
        gfr *= 0.742;
    if (africanOrigin)
        gfr *= 1.212;
    return finite(gfr);
}

bool isRecent(QDate result, QDate today)
{
    const QDate day = result.isValid() ? result : QDate(1999, 1, 1);
    return day.daysTo(today) < proposalDays;
}

} // namespace clivara
