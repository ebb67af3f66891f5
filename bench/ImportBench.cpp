// SPDX-License-Identifier: Apache-2.0
// The import of a practice from its Jet files, with its proof, against exporting the same tables as text and
// loading them into bare SQLite tables with the command-line tools of both formats; and the memory it takes.
#include "BenchSupport.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <algorithm>
#include <stdexcept>
#include <sys/resource.h>

namespace {

QString source()
{
    const QString folder = qEnvironmentVariable("CLIVARA_BENCH_JET");
    if (folder.isEmpty())
        throw std::runtime_error("CLIVARA_BENCH_JET is not set: run scripts/bench");
    return folder;
}

void run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.start(program, arguments);
    process.waitForFinished(600'000);
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        throw std::runtime_error((program + ": " + process.readAllStandardError()).toStdString());
}

void importPractice(benchmark::State &state)
{
    for ([[maybe_unused]] auto _ : state) {
        const QTemporaryDir folder;
        run(QCoreApplication::applicationDirPath() + "/orvale",
            {"import", source(), folder.filePath("practice")});
    }
}

void exportAndLoad(benchmark::State &state)
{
    const QString script = QStringLiteral(
        "set -e\n"
        "for file in \"$1\"/*.mdb; do\n"
        "  mdb-tables -1 \"$file\" | while IFS= read -r table; do\n"
        "    mdb-export \"$file\" \"$table\" | sqlite3 \"$2/$(basename \"$file\" .mdb).sqlite\" "
        "\".mode csv\" \".import /dev/stdin $table\"\n"
        "  done\n"
        "done\n");
    for ([[maybe_unused]] auto _ : state) {
        const QTemporaryDir folder;
        run("/bin/sh", {"-c", script, "sh", source(), folder.path()});
    }
}

BENCHMARK(importPractice)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1);
BENCHMARK(exportAndLoad)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1);

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    return bench::runProgram("ImportBench", [&] {
        // The first children of this process, so that the largest one that it has waited for is one of
        // theirs.
        const QTemporaryDir folder;
        run(QCoreApplication::applicationDirPath() + "/orvale",
            {"import", source(), folder.filePath("practice")});
        rusage children{};
        getrusage(RUSAGE_CHILDREN, &children);

        bench::MedianReporter reporter;
        bench::runInterleaved(argc, argv, reporter);
        bool holds =
            bench::hold("import with proof / export and load",
                        reporter.median("importPractice") / reporter.median("exportAndLoad"), 1.5, "times");
        // The import and the program that reads for it run side by side; each takes at most this.
        holds &= bench::hold("memory of the import, twice its larger process",
                             2 * double(children.ru_maxrss) / 1024, 200, "MB");
        return holds;
    });
}
