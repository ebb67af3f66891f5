// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QProcess>
#include <gtest/gtest.h>

// A second process with the write lock.
class LockHolder {
public:
    explicit LockHolder(const QString &file)
    {
        m_process.start(QStringLiteral(LOCK_HOLDER), {file});
        EXPECT_TRUE(m_process.waitForReadyRead()) << m_process.readAllStandardError().constData();
        EXPECT_EQ(m_process.readLine().trimmed(), "locked");
    }
    ~LockHolder()
    {
        if (m_process.state() != QProcess::NotRunning)
            release();
    }
    void release()
    {
        m_process.write("\n");
        EXPECT_TRUE(m_process.waitForFinished());
    }

private:
    QProcess m_process;
};
