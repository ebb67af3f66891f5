// SPDX-License-Identifier: Apache-2.0
// The program as a whole: --help, the host window until it is visible, its memory, and writing the default
// demo practice.
#include "BenchSupport.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <algorithm>
#include <stdexcept>
#include <vector>

namespace {

// Runs the program to its end; milliseconds until its first line of output (until its end when it prints
// none), and all of it.
struct Finished {
    double firstLine = 0;
    double end = 0;
    QByteArray output;
};

Finished run(const QStringList &arguments)
{
    Finished finished;
    QProcess process;
    QElapsedTimer timer;
    timer.start();
    process.start(QCoreApplication::applicationDirPath() + "/orvale", arguments);
    if (process.waitForReadyRead(120'000))
        finished.firstLine = double(timer.nsecsElapsed()) * 1e-6;
    process.waitForFinished(120'000);
    finished.end = double(timer.nsecsElapsed()) * 1e-6;
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        throw std::runtime_error(
            ("orvale " + arguments.join(' ') + ": " + process.readAllStandardError()).toStdString());
    finished.output = process.readAllStandardOutput();
    return finished;
}

// The figure behind a word in the output.
double figure(const QByteArray &output, const QByteArray &word)
{
    const qsizetype at = output.indexOf(word);
    if (at < 0)
        throw std::runtime_error("the program did not report: " + word.toStdString());
    return output.mid(at + word.size()).trimmed().split('\n').first().toDouble();
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
    return bench::runProgram("ProgramBench", [&] {
        std::vector<double> help, visible, resident;
        for (int round = 0; round < 9; ++round) {
            help.push_back(run({"--help"}).end);
            const Finished host = run({"--practice", bench::practicePath(), "--startup-report"});
            visible.push_back(host.firstLine);
            resident.push_back(figure(host.output, "resident") / 1024);
        }
        QTemporaryDir folder;
        const double demo = run({"demo", folder.filePath("practice")}).end / 1000;

        bool holds = bench::hold("orvale --help", median(help), 50, "ms");
        holds &= bench::hold("host window visible", median(visible), 400, "ms");
        holds &= bench::hold("resident memory of the open host", median(resident), 120, "MB");
        holds &= bench::hold("orvale demo, default practice", demo, 60, "s");
        return holds;
    });
}
