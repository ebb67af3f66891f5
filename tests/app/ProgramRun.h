// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QProcess>
#include <gtest/gtest.h>

struct Outcome {
    int status = -1; // -1: the program crashed
    QString output;
    QString error;
};

// Runs the program as a person does, without a display; `input` is its standard input.
inline Outcome orvaleRun(const QStringList &arguments, const QByteArray &input = {})
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        environment.remove(name);
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(ORVALE_PROGRAM), arguments);
    process.write(input);
    process.closeWriteChannel();
    EXPECT_TRUE(process.waitForFinished(60000));
    if (process.exitStatus() != QProcess::NormalExit)
        return {};
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}
