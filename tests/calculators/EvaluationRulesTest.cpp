// SPDX-License-Identifier: Apache-2.0
#include "evaluations/CardiovascularRules.h"
#include "evaluations/MetabolicRules.h"

#include <gtest/gtest.h>

// What stands around the equations; these themselves are compared in GoldenTest.
namespace clivara {
namespace {

TEST(EvaluationRules, TypedNumbersBecomeWhole)
{
    const std::pair<double, int> cases[]{{50.5, 50},       {51.5, 52},         {89.5, 90},
                                         {200.5, 200},     {-0.5, 0},          {320, 320},
                                         {1e300, INT_MAX}, {-1e300, -INT_MAX}, {50.51, 51}};
    for (const auto &[typed, whole] : cases)
        EXPECT_EQ(wholeNumber(typed), whole) << typed;
}

TEST(EvaluationRules, OnlyAWomanHasTheFemaleRow)
{
    EXPECT_EQ(riskRow(u"F"), 1);
    EXPECT_EQ(riskRow(u" f "), 1);
    for (const char16_t *sex : {u"M", u"", u"X", u"FM"})
        EXPECT_EQ(riskRow(sex), 0);
}

TEST(EvaluationRules, ProposalsGoThreeMonthsBack)
{
    EXPECT_EQ(riskProposalLimit(QDate(2026, 11, 21)), QDate(2026, 8, 21));
    EXPECT_EQ(riskProposalLimit(QDate(2026, 5, 31)), QDate(2026, 2, 28));
    EXPECT_EQ(riskProposalLimit(QDate(2028, 5, 31)), QDate(2028, 2, 29));
}

TEST(EvaluationRules, BandsOfTheChart)
{
    EXPECT_EQ(chartBandText(0), "  n.c.  (età < 40 o > 70)");
    EXPECT_EQ(chartBandText(1), "  I  (meno del 5%)");
    EXPECT_EQ(chartBandText(6), "  VI  (oltre 30%)");
    EXPECT_FALSE(chartBandText(7));
    EXPECT_FALSE(chartBandText(-1));
}

TEST(EvaluationRules, CriteriaAreNamed)
{
    using enum MetabolicItem;
    EXPECT_EQ(metabolicCriteria(u"M", {102, 130, 84, 109, 40, 150}), (QList{Waist, Systolic}));
    EXPECT_EQ(metabolicCriteria(u"m", {102, 130, 85, 109, 40, 150}), (QList{Waist, Systolic, Diastolic}));
    EXPECT_EQ(metabolicCriteria(u"F", {88, 129, 84, 109, 49, 150}), (QList{Waist, Hdl}));
    EXPECT_EQ(metabolicCriteria(u"", {88, 129, 84, 110, 49, 151}),
              (QList{Waist, Glucose, Hdl, Triglycerides}));
}

TEST(EvaluationRules, RegionalThresholdsGoBySex)
{
    MetabolicThresholds thresholds;
    thresholds.waistWomenCm = 80;
    thresholds.waistMenCm = 94;
    thresholds.hdlWomenMgDl = 50;
    thresholds.hdlMenMgDl = 40;
    thresholds.glucoseMgDl = 100;
    EXPECT_EQ(thresholds.of(MetabolicItem::Waist, u"F"), 80);
    EXPECT_EQ(thresholds.of(MetabolicItem::Waist, u"M"), 94);
    EXPECT_EQ(thresholds.of(MetabolicItem::Hdl, u"F"), 50);
    EXPECT_EQ(thresholds.of(MetabolicItem::Hdl, u"M"), 40);
    EXPECT_EQ(thresholds.of(MetabolicItem::Glucose, u""), 100);
    EXPECT_FALSE(thresholds.of(MetabolicItem::Waist, u""));
    EXPECT_FALSE(thresholds.of(MetabolicItem::Hdl, u"X"));
    EXPECT_FALSE(thresholds.of(MetabolicItem::Systolic, u"M"));

    EXPECT_TRUE(isBeyondThreshold(MetabolicItem::Triglycerides, 150, 150)); // here "at" counts
    EXPECT_FALSE(isBeyondThreshold(MetabolicItem::Triglycerides, 149.9, 150));
    EXPECT_TRUE(isBeyondThreshold(MetabolicItem::Hdl, 40, 40));
    EXPECT_FALSE(isBeyondThreshold(MetabolicItem::Hdl, 40.1, 40));
}

} // namespace
} // namespace clivara
