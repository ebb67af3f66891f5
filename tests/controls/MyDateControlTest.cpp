// SPDX-License-Identifier: Apache-2.0
#include "controls/MyDateControl.h"
#include "controls/DatePicker.h"
#include "controls/MaskedDateEdit.h"
#include "support/Clock.h"

#include <QApplication>
#include <QCalendarWidget>
#include <QDialog>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>
#include <gtest/gtest.h>

namespace clivara {
namespace {

const QDate today(2026, 11, 21);
const QDate zeroDay(1899, 12, 30);

class MyDateControlTest : public ::testing::Test {
protected:
    MyDateControlTest()
    {
        auto *layout = new QVBoxLayout(&dialog);
        layout->addWidget(control);
        layout->addWidget(other);
        control->setClock(clock);
        dialog.show();
        QApplication::setActiveWindow(&dialog);
        edit->setFocus();
    }

    void typeAndLeave(const char *text)
    {
        edit->setFocus();
        edit->selectAll();
        QTest::keyClicks(edit, text);
        other->setFocus();
    }
    QString shown() const { return edit->displayText(); }
    QCalendarWidget *calendar() const { return control->findChild<QCalendarWidget *>(); }
    // The part of the calendar that has the keyboard.
    QWidget *days() const { return calendar()->findChild<QWidget *>("qt_calendar_calendarview"); }

    FixedClock clock{today};
    QDialog dialog;
    MyDateControl *control = new MyDateControl;
    QLineEdit *other = new QLineEdit;
    MaskedDateEdit *edit = control->findChild<MaskedDateEdit *>("dtEdit");
    DatePicker *picker = control->findChild<DatePicker *>("dtPick");
    QSignalSpy changes{control, &MyDateControl::changed};
};

TEST_F(MyDateControlTest, StartsEmptyAndWhite)
{
    EXPECT_EQ(shown(), "__/__/____");
    EXPECT_EQ(control->Value(), zeroDay);
    EXPECT_EQ(picker->date(), today);
    EXPECT_EQ(control->BackColor(), QColor(Qt::white));
    EXPECT_TRUE(control->Enabled());
}

TEST_F(MyDateControlTest, ShowsTextsThatAreDates)
{
    control->SetTextValue("1/2/2024");
    EXPECT_EQ(shown(), "01/02/2024");
    EXPECT_EQ(picker->date(), QDate(2024, 2, 1));
    EXPECT_EQ(control->Value(), QDate(2024, 2, 1));
    EXPECT_EQ(changes.count(), 2); // edit and picker

    control->setValue(QDate(2024, 2, 1));
    EXPECT_EQ(changes.count(), 2) << "nothing changed";

    control->SetTextValue("30/12/1899"); // on or before the zero date: nothing
    control->SetTextValue("01/01/1850");
    EXPECT_EQ(shown(), "01/02/2024");
    EXPECT_EQ(changes.count(), 2);

    control->SetTextValue("domani"); // no date: empty
    EXPECT_EQ(shown(), "__/__/____");
    EXPECT_EQ(picker->date(), today);
    EXPECT_EQ(control->Value(), zeroDay);
    EXPECT_EQ(changes.count(), 4);
}

TEST_F(MyDateControlTest, TypedTextMovesThePickerWhenItIsCommitted)
{
    QTest::keyClicks(edit, "12/03/2024");
    EXPECT_EQ(picker->date(), today);
    EXPECT_EQ(changes.count(), 0);
    other->setFocus();
    EXPECT_EQ(picker->date(), QDate(2024, 3, 12));
    EXPECT_EQ(changes.count(), 1);

    typeAndLeave("3112"); // unfinished: the picker goes to today, the text stays
    EXPECT_EQ(shown(), "31/12/____");
    EXPECT_EQ(picker->date(), today);
    EXPECT_EQ(control->Value(), zeroDay);

    typeAndLeave("05/04/2024");
    typeAndLeave("01/01/1850"); // before the zero date: nothing
    EXPECT_EQ(picker->date(), QDate(2024, 4, 5));
    EXPECT_EQ(shown(), "01/01/1850");

    typeAndLeave("1/2/24");
    EXPECT_EQ(shown(), "01/02/2024");
    QTest::keyClick(edit, Qt::Key_Return);
    EXPECT_EQ(control->Value(), QDate(2024, 2, 1));
}

TEST_F(MyDateControlTest, CalendarIsReachedByKeyboard)
{
    typeAndLeave("12/03/2024");
    edit->setFocus();
    QTest::keyClick(edit, Qt::Key_F4);
    ASSERT_TRUE(calendar() && calendar()->isVisible());
    EXPECT_EQ(calendar()->selectedDate(), QDate(2024, 3, 12));
    QTest::keyClick(days(), Qt::Key_Right);
    EXPECT_EQ(shown(), "12/03/2024") << "moving is not picking";
    QTest::keyClick(days(), Qt::Key_Return);
    EXPECT_FALSE(calendar()->isVisible());
    EXPECT_EQ(shown(), "13/03/2024");
    EXPECT_EQ(picker->date(), QDate(2024, 3, 13));

    QTest::keyClick(edit, Qt::Key_Down, Qt::AltModifier);
    EXPECT_TRUE(calendar()->isVisible());
    QTest::keyClick(days(), Qt::Key_Escape);
}

TEST_F(MyDateControlTest, OpenedOnAnEmptyFieldStartsAtToday)
{
    picker->setDate(QDate(2020, 1, 1));
    picker->click();
    EXPECT_EQ(picker->date(), today);
    EXPECT_EQ(changes.count(), 1);
    QTest::keyClick(days(), Qt::Key_Left);
    QTest::keyClick(days(), Qt::Key_Escape);
    EXPECT_FALSE(calendar()->isVisible());
    EXPECT_EQ(shown(), "21/11/2026") << "Esc shows the picker's date, not the one moved to";
    EXPECT_TRUE(dialog.isVisible()) << "Esc closed the calendar, not the form";
}

TEST_F(MyDateControlTest, FlagAndColourReachTheParts)
{
    control->setEnabled(false);
    EXPECT_FALSE(control->Enabled() || edit->isEnabled() || picker->isEnabled());
    control->setEnabled(true);
    EXPECT_TRUE(control->Enabled() && edit->isEnabled() && picker->isEnabled());
    dialog.setEnabled(false);
    EXPECT_TRUE(control->Enabled()) << "the control's own flag";

    QSignalSpy marked(control, &MyDateControl::backColorChanged);
    control->setProperty("BackColor", QColor(Qt::yellow));
    EXPECT_EQ(edit->palette().color(QPalette::Base), QColor(Qt::yellow));
    EXPECT_EQ(marked.count(), 1);
}

} // namespace
} // namespace clivara
