// SPDX-License-Identifier: Apache-2.0
#include "controls/NumericEdit.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QTest>
#include <gtest/gtest.h>

namespace clivara {
namespace {

TEST(NumericEdit, TakesOnlyWhatBelongsToANumber)
{
    struct Case {
        const char *typed;
        const char *shown;
        double number;
    };
    const Case cases[] = {
        {"72", "72", 72},
        {"1,2", "1.2", 1.2},
        {"1.2.3", "1.23", 1.23},
        {"1,2,3", "1.23", 1.23},
        {"-5", "-5", -5},
        {"5-5", "55", 55},
        {"abc", "", 0},
        {"7a2 kg", "72", 72},
        {"1e6", "16", 16},
        {",5", ".5", 0.5},
        {"12345678901234", "123456789012", 123456789012},
    };
    for (const Case &c : cases) {
        NumericEdit edit;
        QTest::keyClicks(&edit, c.typed);
        EXPECT_EQ(edit.text(), c.shown) << c.typed;
        EXPECT_EQ(edit.number(), c.number) << c.typed;
    }
}

TEST(NumericEdit, PastesANumberAndNothingElse)
{
    struct Case {
        const char *pasted;
        const char *shown;
    };
    const Case cases[] = {
        {"72.5", "72.5"},    {" 72,5 kg\n", "72.5"}, {"1.10 mg/dl", "1.10"},
        {"-3", "-3"},        {"1.234,5", "old"},     {"1e6", "old"},
        {"circa 70", "old"}, {"kg", "old"},          {"70-80", "old"},
    };
    for (const Case &c : cases) {
        NumericEdit edit;
        edit.setText("old");
        edit.selectAll();
        QGuiApplication::clipboard()->setText(c.pasted);
        edit.paste();
        EXPECT_EQ(edit.text(), c.shown) << c.pasted;
    }
}

TEST(NumericEdit, ShowsWhatTheProgramSetsAndLetsItBeCorrected)
{
    NumericEdit edit;
    edit.setText(" 72,5 kg");
    EXPECT_EQ(edit.text(), " 72,5 kg");
    EXPECT_EQ(edit.number(), 72); // a stored comma ends the number

    QTest::keyClicks(&edit, "x9");
    EXPECT_EQ(edit.text(), " 72,5 kg");
    QTest::keyClick(&edit, Qt::Key_Backspace);
    EXPECT_EQ(edit.text(), " 72,5 k");
    QTest::keyClick(&edit, Qt::Key_Backspace);
    EXPECT_EQ(edit.text(), "72.5");
    QTest::keyClicks(&edit, "5");
    EXPECT_EQ(edit.text(), "72.55");
    edit.selectAll();
    QTest::keyClicks(&edit, "a");
    EXPECT_EQ(edit.text(), "72.55");
    QTest::keyClicks(&edit, "8");
    EXPECT_EQ(edit.text(), "8");
}

} // namespace
} // namespace clivara
