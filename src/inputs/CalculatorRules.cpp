// SPDX-License-Identifier: Apache-2.0
#include "inputs/CalculatorRules.h"

#include "values/JetValues.h"

#include <algorithm>
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

QDate recentSince(QDate today)
{
    return today.addDays(1 - proposalDays);
}

QStringList otherSpellings(const QString &examCode)
{
    const qsizetype last = examCode.lastIndexOf(u'.') + 1;
    bool isNumber = false;
    const uint number = examCode.mid(last).toUInt(&isNumber);
    if (!isNumber)
        return {};
    QStringList spellings;
    for (const int width : {1, 2})
        spellings << examCode.left(last) + QStringLiteral("%1").arg(number, width, 10, QChar(u'0'));
    spellings.removeDuplicates();
    spellings.removeAll(examCode);
    return spellings;
}

bool holdsNumber(const QString &result)
{
    return std::any_of(result.begin(), result.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

} // namespace clivara
