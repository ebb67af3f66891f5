// SPDX-License-Identifier: Apache-2.0
#include "controls/NumericEdit.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QTest>
#include <gtest/gtest.h>

namespace clivara {
namespace {

void paste(NumericEdit &edit, const char *text)
{
    edit.selectAll();
    QGuiApplication::clipboard()->setText(QString::fromUtf8(text));
    edit.paste();
}

// What is typed key by key and what is pasted comes to the same.
TEST(NumericEdit, ShowsAllThatIsWrittenAndTakesOnlyNumbers)
{
    struct Case {
        const char *written;
        const char *shown;
        double number;
        bool refused;
    };
    const Case cases[] = {
        {"", "", 0, false},
        {"72", "72", 72, false},
        {"1,2", "1.2", 1.2, false},
        {",5", ".5", 0.5, false},
        {"-5", "-5", -5, false},
        {"5.", "5.", 5, false},
        {" 72,5 kg", "72.5", 72.5, false}, // its own unit
        {"72,5KG", "72.5", 72.5, false},
        {"72 lb", "72 lb", 0, true},
        {" 72 ", " 72 ", 72, false},
        {"1 4", "1 4", 0, true},
        {"140/90", "140/90", 0, true},
        {"2-3", "2-3", 0, true},
        {"1.234,5", "1.234,5", 0, true},
        {"1.2.3", "1.2.3", 0, true},
        {"1e6", "1e6", 0, true},
        {"+5", "+5", 0, true},
        {"<0.5", "<0.5", 0, true},
        {"circa 70", "circa 70", 0, true},
        {"kg", "kg", 0, true},
        {"-", "-", 0, true},
        {"123456789012", "123456789012", 123456789012, false},
        {"1234567890123", "1234567890123", 0, true}, // none is cut off
    };
    for (const Case &c : cases) {
        for (const bool pasted : {false, true}) {
            NumericEdit edit;
            edit.setUnit("kg");
            if (pasted)
                paste(edit, c.written);
            else
                QTest::keyClicks(&edit, c.written);
            EXPECT_EQ(edit.text(), c.shown) << c.written << pasted;
            EXPECT_EQ(edit.number(), c.number) << c.written << pasted;
            EXPECT_EQ(edit.isRefused(), c.refused) << c.written << pasted;
            EXPECT_EQ(edit.accessibleDescription().toStdString(),
                      c.refused ? "Attenzione: «" + std::string(c.shown) + "» non è un numero" : "");
        }
    }
}

TEST(NumericEdit, ATypedCommaBecomesAPointAtOnce)
{
    NumericEdit edit;
    QTest::keyClicks(&edit, "1,");
    EXPECT_EQ(edit.text(), "1.");
    edit.setText("12");
    edit.setCursorPosition(1);
    QTest::keyClicks(&edit, ",5");
    EXPECT_EQ(edit.text(), "1.52");
    paste(edit, "97 µmol/l");
    EXPECT_EQ(edit.text(), "97 µmol/l") << "a field without a unit leaves none out";
    EXPECT_TRUE(edit.isRefused());
}

TEST(NumericEdit, ShowsWhatTheProgramSetsAndLetsItBeCorrected)
{
    NumericEdit edit;
    edit.setUnit("kg");
    edit.setText(" 72,5 kg");
    EXPECT_EQ(edit.text(), " 72,5 kg");
    EXPECT_EQ(edit.number(), 72) << "a stored comma ends the number";
    EXPECT_FALSE(edit.isRefused());
    EXPECT_EQ(edit.accessibleDescription().toStdString(), "Attenzione: «72,5 kg» non è un numero");

    QTest::keyClick(&edit, Qt::Key_Backspace);
    EXPECT_EQ(edit.text(), " 72,5 k");
    EXPECT_TRUE(edit.isRefused());
    EXPECT_EQ(edit.number(), 0);
    QTest::keyClick(&edit, Qt::Key_Backspace);
    EXPECT_EQ(edit.text(), "72.5");
    EXPECT_FALSE(edit.isRefused());
    edit.setText({});
    QTest::keyClicks(&edit, "1 o 2");
    EXPECT_TRUE(edit.isRefused());
    edit.setText("1 o 2"); // which stands there already, but now it is the program's
    EXPECT_FALSE(edit.isRefused());
    EXPECT_EQ(edit.number(), 1);
    edit.setText(" 72.5");
    EXPECT_EQ(edit.accessibleDescription(), "") << "blanks are no fault";
}

TEST(NumericEdit, TheMarkIsSeen)
{
    const auto redPixels = [](NumericEdit &edit) {
        const QImage picture = edit.grab().toImage();
        int red = 0;
        for (int x = 0; x < picture.width(); ++x) {
            for (int y = 0; y < picture.height(); ++y)
                red += picture.pixelColor(x, y) == QColor(192, 0, 0) ? 1 : 0;
        }
        return red;
    };
    NumericEdit edit;
    edit.resize(edit.sizeHint());
    QTest::keyClicks(&edit, "140");
    EXPECT_EQ(redPixels(edit), 0);
    QTest::keyClicks(&edit, "/90");
    EXPECT_GT(redPixels(edit), edit.width());
    EXPECT_GT(edit.textMargins().left(), 0) << "room for the sign";
    edit.setText({});
    EXPECT_EQ(redPixels(edit), 0);
}

} // namespace
} // namespace clivara
