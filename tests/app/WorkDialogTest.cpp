// SPDX-License-Identifier: Apache-2.0
#include "app/window/WorkDialog.h"
#include "app/practice/UserError.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QThread>
#include <QTimer>
#include <gtest/gtest.h>

using orvale::UserError;
using orvale::WorkDialog;

class WorkDialogTest : public ::testing::Test {
protected:
    QString text(const char *label) const { return m_dialog.findChild<QLabel *>(label)->text(); }
    // What the doctor does once the work says that it is under way.
    void whenUnderWay(const std::function<void()> &act)
    {
        QObject::connect(&m_poll, &QTimer::timeout, [this, act] {
            if (m_dialog.isVisible() && m_isUnderWay) {
                m_poll.stop();
                act();
            }
        });
        m_poll.start(5);
    }
    // Reports until it is given up; true when what it had done was undone.
    bool isUndone(const std::function<void()> &act)
    {
        bool wasUndone = false;
        whenUnderWay(act);
        const bool wasDone = m_dialog.run([&](const WorkDialog::Report &report) {
            try {
                for (int i = 0; i < 1000; ++i) {
                    report({{}, {}, i, 1000});
                    m_isUnderWay = true;
                    QThread::msleep(10);
                }
            } catch (...) {
                wasUndone = true;
                throw;
            }
        });
        EXPECT_FALSE(wasDone);
        return wasUndone;
    }

    WorkDialog m_dialog{"Prova", "Si comincia."};
    QTimer m_poll;
    std::atomic_bool m_isUnderWay = false;
};

TEST_F(WorkDialogTest, ShowsProgressWhileTheWindowAnswers)
{
    const auto bar = m_dialog.findChild<QProgressBar *>();
    std::atomic_bool wasSeen = false;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        if (m_dialog.isVisible() && bar->maximum() > 0 && bar->value() * 4 == bar->maximum()) {
            EXPECT_EQ(text("stage"), "Si legge.");
            EXPECT_EQ(text("detail"), "riga 30");
            wasSeen = true;
        }
    });
    poll.start(5);
    EXPECT_EQ(text("stage"), "Si comincia.");
    EXPECT_TRUE(m_dialog.run([&](const WorkDialog::Report &report) {
        report({"Si legge.", {}, 0, 0});
        // More rows than fit in the bar's own numbers, and far more reports than anybody can look at.
        for (qint64 i = 1; i <= 100'000; ++i)
            report({{}, "riga 30", 30'000'000'000, 120'000'000'000});
        // Goes on only when the window has shown it: a window that waits for the work never would.
        for (int i = 0; i < 500 && !wasSeen; ++i)
            QThread::msleep(10);
    }));
    EXPECT_TRUE(wasSeen);
}

TEST_F(WorkDialogTest, GivesUpByItsButton)
{
    EXPECT_TRUE(isUndone([this] { m_dialog.findChild<QPushButton *>()->click(); }));
}

TEST_F(WorkDialogTest, GivesUpByEsc)
{
    EXPECT_TRUE(isUndone([this] { QTest::keyClick(&m_dialog, Qt::Key_Escape); }));
}

TEST_F(WorkDialogTest, GivesUpByTheWindowsCloseButton)
{
    EXPECT_TRUE(isUndone([this] {
        m_dialog.close();
        EXPECT_TRUE(m_dialog.isVisible()); // until the work has ended
    }));
}

// What is done is done: nobody may be told that nothing happened.
TEST_F(WorkDialogTest, TellsThatTheWorkWasDoneThoughAskedTooLate)
{
    std::atomic_bool wasAsked = false;
    whenUnderWay([&] {
        m_dialog.findChild<QPushButton *>()->click();
        wasAsked = true;
    });
    EXPECT_TRUE(m_dialog.run([&](const WorkDialog::Report &) {
        m_isUnderWay = true;
        for (int i = 0; i < 500 && !wasAsked; ++i)
            QThread::msleep(10);
    }));
    EXPECT_TRUE(wasAsked);
}

TEST_F(WorkDialogTest, PassesAnErrorOn)
{
    EXPECT_THROW(m_dialog.run([](const WorkDialog::Report &) { throw UserError("disco pieno"); }), UserError);
}
