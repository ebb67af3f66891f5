// SPDX-License-Identifier: Apache-2.0
#include "support/Log.h"

#include "support/Clock.h"
#include "support/SettingsStore.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

namespace {

using clivara::FixedClock;
using clivara::Log;
using clivara::MemorySettings;

QDateTime moment(int day, int hour, int minute, int second, int ms)
{
    return QDateTime(QDate(2024, 3, day), QTime(hour, minute, second, ms), Qt::UTC);
}

class LogTest : public testing::Test {
protected:
    LogTest() { settings.write("orvale_work", work.path()); }

    void makeLogFolder() { ASSERT_TRUE(QDir(work.path()).mkdir("logOrvale")); }
    QByteArray bytes(const QString &name) const
    {
        QFile file(work.filePath("logOrvale/" + name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
    }

    QTemporaryDir work;
    MemorySettings settings;
    FixedClock clock{moment(7, 14, 5, 9, 42)};
    Log log{clock};
};

TEST_F(LogTest, WritesStampedLinesOfSingleBytes)
{
    makeLogFolder();
    log.start(settings, "==");
    EXPECT_TRUE(log.isEnabled());
    log.write("perché € “x” ☃ ż 😀 è");
    log.write("a\nb\r\nc"); // several physical lines, one stamp
    log.write({});
    EXPECT_EQ(bytes("log_24_03_07.log"),
              QByteArray("07/03/2024 14:05:09:042 ==\r\n"
                         "07/03/2024 14:05:09:042 perch\xE9 \x80 \x93x\x94 ? ? ? \xE8\r\n"
                         "07/03/2024 14:05:09:042 a\nb\r\nc\r\n"
                         "07/03/2024 14:05:09:042 \r\n"));
}

TEST_F(LogTest, StartsANewFileAtMidnight)
{
    makeLogFolder();
    clock.set(moment(7, 23, 59, 59, 999));
    log.start(settings, "before");
    clock.set(moment(8, 0, 0, 0, 0));
    log.write("after");
    EXPECT_EQ(bytes("log_24_03_07.log"), "07/03/2024 23:59:59:999 before\r\n");
    EXPECT_EQ(bytes("log_24_03_08.log"), "08/03/2024 00:00:00:000 after\r\n");
}

TEST_F(LogTest, WithoutItsFolderWritesAndCreatesNothing)
{
    log.start(settings, "==");
    EXPECT_FALSE(log.isEnabled());
    log.write("x");
    EXPECT_TRUE(QDir(work.path()).isEmpty());

    makeLogFolder(); // too late for this instance
    log.write("x");
    EXPECT_TRUE(QDir(work.filePath("logOrvale")).isEmpty());
}

TEST_F(LogTest, AFileInPlaceOfTheFolderSwitchesItOff)
{
    QFile file(work.filePath("logOrvale"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    log.start(settings, "==");
    EXPECT_FALSE(log.isEnabled());
    EXPECT_FALSE(clivara::folderExists({}));
    EXPECT_TRUE(clivara::folderExists(work.path()));
}

TEST_F(LogTest, ALineThatCannotBeWrittenIsLostAlone)
{
    makeLogFolder();
    ASSERT_TRUE(QDir(work.path()).mkdir("logOrvale/log_24_03_07.log")); // the day's file cannot be opened
    log.start(settings, "lost");
    clock.set(moment(8, 8, 0, 0, 0));
    log.write("kept");
    EXPECT_EQ(bytes("log_24_03_08.log"), "08/03/2024 08:00:00:000 kept\r\n");

    ASSERT_TRUE(QDir(work.filePath("logOrvale")).removeRecursively());
    log.write("lost"); // the folder went away meanwhile
    EXPECT_FALSE(QDir(work.filePath("logOrvale")).exists());
}

TEST_F(LogTest, LinesOfSeveralProcessesStayWhole)
{
    makeLogFolder();
    qputenv("XDG_CONFIG_HOME", work.path().toLocal8Bit());
    clivara::openUserSettings()->write("ORVALE_WORK", work.path());
    constexpr int processes = 4;
    constexpr int lines = 250;
    std::vector<std::unique_ptr<QProcess>> writers;
    for (int i = 0; i < processes; ++i) {
        writers.push_back(std::make_unique<QProcess>());
        writers.back()->start(QStringLiteral(SETTINGS_PEER),
                              {"log", QString(300, QLatin1Char('a' + i)), QString::number(lines)});
    }
    for (const auto &writer : writers)
        ASSERT_TRUE(writer->waitForFinished(60000));
    qunsetenv("XDG_CONFIG_HOME");

    QByteArray all; // one file, or two around midnight
    for (const QFileInfo &day : QDir(work.filePath("logOrvale")).entryInfoList(QDir::Files))
        all += bytes(day.fileName());
    QList<QByteArray> written = all.split('\n');
    EXPECT_EQ(written.takeLast(), "");
    EXPECT_EQ(written.size(), processes * lines);
    for (const QByteArray &line : written) {
        ASSERT_EQ(line.size(), 24 + 300 + 1) << line.constData();
        ASSERT_EQ(line.mid(24, 300).count(line[24]), 300) << line.constData();
    }
}

} // namespace
