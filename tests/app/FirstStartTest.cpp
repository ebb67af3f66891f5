// SPDX-License-Identifier: Apache-2.0
#include "app/FirstStart.h"
#include "app/UserError.h"

#include <QProgressBar>
#include <QPushButton>
#include <QThread>
#include <QTimer>
#include <gtest/gtest.h>

using orvale::DemoProgress;
using orvale::FirstStart;
using orvale::UserError;

TEST(FirstStart, ShowsProgressWhileTheWindowAnswers)
{
    std::atomic_bool wasSeen = false;
    FirstStart dialog([&](const DemoProgress &progress) {
        progress(30, 120);
        // Goes on only when the window has shown it: a window that waits for the writer never would.
        for (int i = 0; i < 500 && !wasSeen; ++i)
            QThread::msleep(10);
        progress(120, 120);
    });
    const auto bar = dialog.findChild<QProgressBar *>();
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        if (dialog.isVisible() && bar->maximum() == 120 && bar->value() == 30)
            wasSeen = true;
    });
    poll.start(5);
    EXPECT_TRUE(dialog.run());
    EXPECT_TRUE(wasSeen);
}

TEST(FirstStart, GivesUpWhenAsked)
{
    bool wasUndone = false;
    FirstStart dialog([&](const DemoProgress &progress) {
        try {
            for (int i = 0; i < 1000; ++i) {
                progress(i, 1000);
                QThread::msleep(10);
            }
        } catch (...) {
            wasUndone = true;
            throw;
        }
    });
    QTimer::singleShot(50, [&] { dialog.findChild<QPushButton *>()->click(); });
    EXPECT_FALSE(dialog.run());
    EXPECT_TRUE(wasUndone);
}

TEST(FirstStart, PassesAnErrorOn)
{
    FirstStart dialog([](const DemoProgress &) { throw UserError(QStringLiteral("disco pieno")); });
    EXPECT_THROW(dialog.run(), UserError);
}
