// SPDX-License-Identifier: Apache-2.0
// The program as a whole: --help, the host window until it is visible, its memory, and writing the default
// demo practice.
#include "BenchSupport.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <vector>

namespace {

struct Finished {
    double milliseconds;
    QByteArray output;
};

Finished run(const QStringList &arguments)
{
    QProcess process;
    QElapsedTimer timer;
    timer.start();
    process.start(QCoreApplication::applicationDirPath() + "/orvale", arguments);
    if (!process.waitForFinished(120'000) || process.exitCode() != 0)
        throw std::runtime_error(
            ("orvale " + arguments.join(' ') + ": " + process.readAllStandardError()).toStdString());
    return {double(timer.nsecsElapsed()) * 1e-6, process.readAllStandardOutput()};
}

double median(std::vector<double> figures)
{
    std::nth_element(figures.begin(), figures.begin() + figures.size() / 2, figures.end());
    return figures[figures.size() / 2];
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    try {
        std::vector<double> help, visible, resident;
        for (int round = 0; round < 9; ++round) {
            help.push_back(run({"--help"}).milliseconds);
            const QByteArray report = run({"--practice", bench::practicePath(), "--startup-report"}).output;
            const QJsonObject figures = QJsonDocument::fromJson(report).object();
            visible.push_back(figures["visibleMs"].toDouble());
            resident.push_back(figures["residentMb"].toDouble());
        }
        QTemporaryDir folder;
        const double demo = run({"demo", folder.filePath("practice")}).milliseconds / 1000;

        bool holds = bench::hold("orvale --help", median(help), 50, "ms");
        holds &= bench::hold("host window visible", median(visible), 400, "ms");
        holds &= bench::hold("resident memory of the open host", median(resident), 120, "MB");
        holds &= bench::hold("orvale demo, default practice", demo, 60, "s");
        return holds ? 0 : 1;
    } catch (const std::exception &error) {
        std::fprintf(stderr, "ProgramBench: %s\n", error.what());
        return 1;
    }
}
