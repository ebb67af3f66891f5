// SPDX-License-Identifier: Apache-2.0
#include "evaluations/CardiovascularRules.h"

#include "inputs/CalculatorRules.h"
#include "values/JetValues.h"

#include <array>
#include <cmath>
#include <limits>

namespace clivara {

namespace {

struct Coefficients {
    double age, systolic, totalCholesterol, hdl, smoker, diabetic, treatedHypertension;
    double centre;
    double survival;
};

constexpr std::array coefficients{
    Coefficients{0.076, 0.013, 0.006, -0.013, 0.508, 0.462, 0.49, 6.583, 0.953}, // men
    Coefficients{0.079, 0.016, 0.003, -0.015, 0.773, 0.339, 0.59, 6.016, 0.989}, // women
};

constexpr std::array bandTexts{u"  n.c.  (età < 40 o > 70)", u"  I  (meno del 5%)", u"  II  (5%-10%)",
                               u"  III  (10%-15%)",          u"  IV  (15%-20%)",    u"  V  (20%-30%)",
                               u"  VI  (oltre 30%)"};

} // namespace

int riskRow(QStringView sex)
{
    return sexFromText(sex) == Sex::Female ? 1 : 0;
}

int wholeNumber(double value)
{
    constexpr int most = std::numeric_limits<int>::max();
    return jet::toLong(value).value_or(value < 0 ? -most : most);
}

double CalcolaRCV(int sexRow, int ageYears, int smoker, int systolicMmHg, int totalCholesterolMgDl,
                  int hdlMgDl, int diabetic, int treatedHypertension)
{
    const Coefficients &of = coefficients.at(std::size_t(sexRow));
    const double score = of.age * ageYears + of.systolic * systolicMmHg
                         + of.totalCholesterol * totalCholesterolMgDl + of.hdl * hdlMgDl + of.smoker * smoker
                         + of.diabetic * diabetic + of.treatedHypertension * treatedHypertension - of.centre;
    return 1 - std::pow(of.survival, std::exp(score));
}

QDate referenceDay(QStringView regionCode)
{
    return regionCode == u"16" ? QDate(2008, 1, 9) : QDate();
}

std::optional<QString> chartBandText(int level)
{
    if (level < 0 || level >= int(bandTexts.size()))
        return std::nullopt;
    return QString::fromUtf16(bandTexts[std::size_t(level)]);
}

QDate riskProposalLimit(QDate today)
{
    return today.addMonths(-3);
}

} // namespace clivara
