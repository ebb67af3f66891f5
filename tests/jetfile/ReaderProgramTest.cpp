// SPDX-License-Identifier: Apache-2.0
#include "jetfile/JetFileFixture.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <atomic>
#include <csignal>
#include <thread>

namespace jetfile {

namespace {

// The programs that this thread has started and that have not been waited for.
QList<int> children()
{
    QFile list("/proc/thread-self/children");
    EXPECT_TRUE(list.open(QIODevice::ReadOnly));
    QList<int> processes;
    for (const QByteArray &process : list.readAll().split(' ')) {
        if (!process.trimmed().isEmpty())
            processes += process.toInt();
    }
    return processes;
}

// Reads more than fits into the pipe at once, so that the program is still at work after the definitions.
class ReaderProgramTest : public JetFileFixture {
protected:
    ReaderProgramTest()
        : m_path(save(manyRows()))
    {
    }
    // The line in which reading on ends; empty when all rows come.
    static QString endOf(JetFileReader &reader)
    {
        try {
            JetRow row;
            int count = 0;
            while (reader.nextRow(row))
                ++count;
            EXPECT_EQ(count, rows);
        } catch (const SourceError &error) {
            return error.text();
        }
        return {};
    }

    static constexpr int rows = 9000;
    const QString m_path;

private:
    static QByteArray manyRows()
    {
        static const QByteArray bytes = [] {
            JetFileWriter writer;
            JetTableWriter &table = writer.table("righe", {number, {"t", JetType::Text, 255}});
            const QString text = letters(250);
            for (int i = 0; i < rows; ++i)
                table.addRow({i, text});
            return writer.bytes();
        }();
        return bytes;
    }
};

TEST_F(ReaderProgramTest, IsGoneWithItsReaderWhereverThatStops)
{
    {
        JetFileReader unread(m_path);
        EXPECT_EQ(children().size(), 1);
    }
    EXPECT_TRUE(children().isEmpty());
    {
        JetFileReader reader(m_path);
        JetRow row;
        for (int i = 0; i < 100; ++i)
            ASSERT_TRUE(reader.nextRow(row));
    }
    EXPECT_TRUE(children().isEmpty());
    {
        JetFileReader reader(m_path);
        EXPECT_EQ(endOf(reader), QString());
    }
    EXPECT_TRUE(children().isEmpty());
}

TEST_F(ReaderProgramTest, ADeathInTheMiddleIsADamagedFile)
{
    JetFileReader reader(m_path);
    ASSERT_EQ(children().size(), 1);
    ASSERT_EQ(::kill(children().first(), SIGKILL), 0);
    EXPECT_EQ(endOf(reader), QStringLiteral("Il file «%1» è danneggiato o incompleto.").arg(m_path));
}

TEST_F(ReaderProgramTest, ASilenceLongerThanThePatienceIsADamagedFile)
{
    JetFileReader reader(m_path, std::chrono::milliseconds(400));
    ASSERT_EQ(children().size(), 1);
    ASSERT_EQ(::kill(children().first(), SIGSTOP), 0);
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(endOf(reader), QStringLiteral("Il file «%1» è danneggiato o incompleto.").arg(m_path));
    EXPECT_GE(timer.elapsed(), 390);
    EXPECT_LT(timer.elapsed(), 10'000);
}

TEST_F(ReaderProgramTest, ASlowReaderMayTakeItsTime)
{
    JetFileReader reader(m_path, std::chrono::milliseconds(200));
    std::this_thread::sleep_for(std::chrono::milliseconds(600)); // the program waits at the full pipe
    EXPECT_EQ(endOf(reader), QString());
}

TEST_F(ReaderProgramTest, ThreadsWithoutEventLoopReadAtTheSameTime)
{
    std::atomic<int> whole = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back([&] {
            JetFileReader reader(m_path);
            whole += endOf(reader).isEmpty();
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(whole, 3);
}

} // namespace

} // namespace jetfile
