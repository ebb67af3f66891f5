// SPDX-License-Identifier: Apache-2.0
#include "chart/MeasuredText.h"

#include <gtest/gtest.h>

namespace clivara {
namespace {

TEST(MeasuredTextTest, NormalisesNumbers)
{
    const struct {
        const char *text, *normalised;
    } cases[] = {
        {"12.5", "012,50"},   {"12,5", "012,50"},      {"7", "07"},  {"", "0"},     {"   ", "0"},
        {" 72.5 ", "072,50"}, {"1.234,5", "01,23450"}, {",", "0,0"}, {"-3", "0-3"}, {"3-4", "034"},
        {" -3.", "0-3,0"},    {"kg 81,0", "081,00"},   {"١٢", "0"}, // digits of other scripts are none
    };
    for (const auto &[text, normalised] : cases)
        EXPECT_EQ(NormalizzaNumero(QString::fromUtf8(text)).toStdString(), normalised) << text;
}

TEST(MeasuredTextTest, FormatsWithOneDecimalOrWhole)
{
    const struct {
        const char *text, *decimal, *whole;
    } cases[] = {
        {"172", "172.0", "172"}, {" 72.5", "72.5", "72"},  {"72,55", "72.6", "72"}, {"", "0.0", "0"},
        {"     ", "0.0", "0"},   {"99.99", "100.0", "99"}, {"abc", "0.0", "0"},     {".5", "0.5", "0"},
    };
    for (const auto &[text, decimal, whole] : cases) {
        EXPECT_EQ(FormattaValore(QString::fromUtf8(text), false).toStdString(), decimal) << text;
        EXPECT_EQ(FormattaValore(QString::fromUtf8(text), true).toStdString(), whole) << text;
    }
}

} // namespace
} // namespace clivara
