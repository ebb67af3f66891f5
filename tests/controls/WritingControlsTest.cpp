// SPDX-License-Identifier: Apache-2.0
#include "TestPrompts.h"
#include "controls/ChoiceBox.h"
#include "controls/ChooserButton.h"
#include "controls/DateFieldGuard.h"
#include "controls/MaskedDateEdit.h"
#include "controls/MemoEdit.h"
#include "support/Clock.h"

#include <QApplication>
#include <QTest>
#include <QVBoxLayout>
#include <QWheelEvent>

namespace clivara {
namespace {

TEST(MemoEdit, GivesBackWhatItGot)
{
    MemoEdit memo;
    const QString stored = "a\r\nb\nc\rd\u00a0\t «è» ";
    memo.setStoredText(stored);
    EXPECT_EQ(memo.storedText(), stored);
    memo.insertPlainText("x");
    memo.undo();
    EXPECT_EQ(memo.storedText(), stored) << "nothing was edited after all";
    memo.insertPlainText("x");
    EXPECT_EQ(memo.storedText(), "xa\r\nb\r\nc\r\nd\u00a0\t «è» ");
    memo.setStoredText({});
    EXPECT_EQ(memo.storedText(), "");
    EXPECT_FALSE(memo.document()->isUndoAvailable()) << "nothing of the record before";
}

TEST(ChoiceBox, ChangesOnlyByIntent)
{
    QWidget window;
    ChoiceBox box(&window);
    box.addItems({"uno", "due", "tre"});
    box.showIndex(0);
    window.show();
    QApplication::setActiveWindow(&window);
    window.setFocus();
    const auto turnWheel = [&] {
        QWheelEvent wheel({5, 5}, box.mapToGlobal(QPointF(5, 5)), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(&box, &wheel);
    };
    turnWheel();
    QTest::keyClick(&box, Qt::Key_Delete);
    EXPECT_EQ(box.currentIndex(), 0);
    EXPECT_FALSE(box.isChosen());
    box.setFocus();
    turnWheel();
    EXPECT_EQ(box.currentIndex(), 1);
    EXPECT_TRUE(box.isChosen());

    box.setOptional(true);
    box.showIndex(-1);
    EXPECT_FALSE(box.isChosen());
    QTest::keyClick(&box, Qt::Key_Delete);
    EXPECT_EQ(box.currentIndex(), -1);
    EXPECT_TRUE(box.isChosen()) << "what it could not show is taken away";
}

TEST(ChooserButton, ShowsAnyTextAndOpensByKeyboard)
{
    ChooserButton button;
    const auto text = QStringLiteral("A & B && C");
    button.setValue(text);
    EXPECT_EQ(button.value(), text);
    int opened = 0;
    QObject::connect(&button, &QPushButton::clicked, &button, [&] { ++opened; });
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space})
        QTest::keyClick(&button, key);
    EXPECT_EQ(opened, 3);
    button.setValue(QString(500, 'x'));
    EXPECT_LT(button.minimumSizeHint().width(), 300) << "a long name gives way";
}

TEST(MaskedDateEdit, EverySeparatorLeadsToTheNextPart)
{
    for (const QChar separator : {u'/', u'-'}) {
        for (const char *typed : {"1/2/2024", "01/02/2024", "1-2-2024", "01-02-2024", "1.2.2024",
                                  "01.02.2024", "1,2,2024", "1 2 2024", "01022024", "01/2-2024"}) {
            MaskedDateEdit edit;
            edit.setSeparator(separator);
            QTest::keyClicks(&edit, typed);
            EXPECT_EQ(edit.dateText(), QString("01/02/2024").replace(u'/', separator))
                << typed << " over " << QString(separator).toStdString();
        }
    }
}

TEST(DateFieldGuard, TwoWrongDatesDoNotFightForTheFocus)
{
    FixedClock clock{QDate(2026, 11, 21)};
    TestPrompts prompts;
    bool leaving = false;
    DateFieldGuard guard(clock, prompts, [&] { return leaving; });
    QWidget window;
    QVBoxLayout layout(&window);
    MaskedDateEdit first, second;
    QLineEdit other;
    for (QLineEdit *const edit :
         {static_cast<QLineEdit *>(&first), static_cast<QLineEdit *>(&second), &other})
        layout.addWidget(edit);
    for (MaskedDateEdit *const edit : {&first, &second}) {
        edit->setSeparator(u'-');
        guard.watch(edit, DateFieldGuard::Empty::Allowed);
    }
    window.show();
    QApplication::setActiveWindow(&window);
    other.setFocus();
    first.setDateText("31-02-2026");
    second.setDateText("31-04-2026");
    first.setFocus();
    prompts.queue();
    second.setFocus();
    QCoreApplication::processEvents();
    EXPECT_TRUE(first.hasFocus());
    EXPECT_EQ(prompts.boxes.size(), 1);

    first.setDateText("29-2-28");
    prompts.queue();
    second.setFocus();
    EXPECT_EQ(first.displayText(), "29-02-2028");
    other.setFocus();
    QCoreApplication::processEvents();
    EXPECT_TRUE(second.hasFocus());
    EXPECT_EQ(prompts.boxes.size(), 2);

    leaving = true;
    other.setFocus();
    second.setDateText({});
    leaving = false;
    second.setFocus();
    EXPECT_EQ(second.displayText(), "21-11-2026");
    EXPECT_TRUE(second.isModified()) << "a date like one that was typed";
}

} // namespace
} // namespace clivara
