// SPDX-License-Identifier: Apache-2.0
#include "inputs/CalculatorRules.h"
#include "values/JetValues.h"

#include <gtest/gtest.h>
#include <limits>

namespace clivara {
namespace {

constexpr auto male = Sex::Male;
constexpr auto female = Sex::Female;
constexpr auto unknown = Sex::Unknown;

// As the forms show it; "-" for no result.
std::string shown(std::optional<double> value, QStringView pattern)
{
    return value ? jet::formatNumber(*value, pattern).toStdString() : "-";
}

TEST(CalculatorRules, ReadsTheSex)
{
    const std::pair<const char *, Sex> cases[] = {
        {"M", male},   {"F", female},  {"m", male},     {" f ", female},
        {"", unknown}, {"X", unknown}, {"MF", unknown},
    };
    for (const auto &[text, sex] : cases)
        EXPECT_EQ(sexFromText(QString(text)), sex) << text;
}

TEST(CalculatorRules, CockcroftClearance)
{
    struct Case {
        Sex sex;
        double age, weight, creatinine;
        const char *clearance;
    };
    const Case cases[] = {
        {male, 140, 70, 1.0, "0.00"}, {male, 60, 70, 1e6, "0.00"}, {male, 60, -70, 1.0, "-77.78"},
        {unknown, 60, 70, 1.0, "-"},  {male, 60, 70, 0, "-"},      {male, 60, 0, 0, "-"},
    };
    for (const Case &c : cases) {
        EXPECT_EQ(shown(cockcroftClearanceMlMin(c.sex, c.age, c.weight, c.creatinine), u"0.00"), c.clearance)
            << c.age << ' ' << c.weight << ' ' << c.creatinine;
    }
}

TEST(CalculatorRules, ExpectedClearance)
{
    EXPECT_FALSE(expectedClearanceMlMin(male, 39));
    EXPECT_EQ(expectedClearanceMlMin(male, 40), 100);
    EXPECT_EQ(expectedClearanceMlMin(female, 40), 90);
    EXPECT_EQ(expectedClearanceMlMin(female, 100), 30);
    EXPECT_FALSE(expectedClearanceMlMin(unknown, 60));
}

TEST(CalculatorRules, LdlCholesterol)
{
    struct Case {
        double total, hdl, triglycerides;
        const char *ldl;
    };
    const Case cases[] = {
        {200, 50, 150, "120.0"},   {200, 50, 152.5, "119.6"}, // halves to even: 152
        {200, 50, 153.5, "119.2"}, // 154
        {200, 50, 2000, "-250.0"}, {200, 50, 0.4, "150.0"},   {1e6, 50, 150, "999920.0"},
    };
    for (const Case &c : cases)
        EXPECT_EQ(shown(ldlMgDl(c.total, c.hdl, c.triglycerides), u"0.0"), c.ldl) << c.triglycerides;
    EXPECT_FALSE(ldlMgDl(std::numeric_limits<double>::max(), -std::numeric_limits<double>::max(), 1));
}

TEST(CalculatorRules, CholesterolRatio)
{
    EXPECT_EQ(riskRatio(200, 50), 4.0);
    EXPECT_FALSE(riskRatio(200, 0));
    struct Case {
        double ratio;
        bool highForMen, highForWomen;
    };
    for (const Case &c : {Case{4.0, false, false}, Case{4.49, false, false}, Case{4.5, false, true},
                          Case{4.99, false, true}, Case{5.0, true, true}}) {
        EXPECT_EQ(isRatioHigh(male, c.ratio), c.highForMen) << c.ratio;
        EXPECT_EQ(isRatioHigh(female, c.ratio), c.highForWomen) << c.ratio;
        EXPECT_FALSE(isRatioHigh(unknown, c.ratio)) << c.ratio;
    }
}

TEST(CalculatorRules, FiltrationRate)
{
    struct Case {
        Sex sex;
        double age, creatinine;
        bool african;
        const char *gfr;
    };
    const Case cases[] = {
        {unknown, 60, 1.0, false, "81.01"}, {male, 60, 1e6, false, "0.00"}, {male, 0, 1.0, false, "-"},
        {male, 60, 0, false, "-"},          {male, 60, -1, false, "-"},
    };
    for (const Case &c : cases)
        EXPECT_EQ(shown(mdrdGfrMlMin(c.sex, c.age, c.creatinine, c.african), u"0.00"), c.gfr)
            << c.age << ' ' << c.creatinine;
}

TEST(CalculatorRules, ResultsOfThePastYear)
{
    const QDate today(2026, 11, 21);
    EXPECT_TRUE(isRecent(today, today));
    EXPECT_TRUE(isRecent(today.addDays(-365), today));
    EXPECT_FALSE(isRecent(today.addDays(-366), today));
    EXPECT_TRUE(isRecent(today.addDays(1), today));
    EXPECT_FALSE(isRecent(QDate(), today));
    EXPECT_TRUE(isRecent(QDate(), QDate(1999, 6, 1))) << "a missing date counts as 01/01/1999";
}

} // namespace
} // namespace clivara
