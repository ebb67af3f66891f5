// SPDX-License-Identifier: Apache-2.0
// Forms on a practice of a server against the same practice of files, both in one run; and how often each
// section asks the server before it is painted, counted in the server's log.
#include "BenchHost.h"
#include "BenchSupport.h"
#include "host/Sections.h"

#include <QFile>
#include <QRegularExpression>
#include <cstdio>

namespace {

constexpr qint16 problemsAction = 5;
constexpr qint16 ldlAction = 80;
constexpr int openings = 20;

QString required(const char *variable)
{
    const QString value = qEnvironmentVariable(variable);
    if (value.isEmpty())
        throw std::runtime_error(std::string(variable) + " is not set: run scripts/bench");
    return value;
}

// The messages that have reached the server so far, each with its answer back: statements without those that keep a
// transaction's state, which travel with them.
int statementsLogged()
{
    QFile log(required("PGHOST") + QStringLiteral("/log"));
    if (!log.open(QIODevice::ReadOnly))
        throw std::runtime_error("the server's log cannot be read");
    static const QRegularExpression statement(
        QStringLiteral("LOG:  (statement|execute [^:]*): (?!(RELEASE|SAVEPOINT) statement\n)"));
    return int(QString::fromUtf8(log.readAll()).count(statement));
}

int roundTrips(bench::Host &host, qint16 action, int patient)
{
    const int before = statementsLogged();
    host.openForm(action, patient);
    return statementsLogged() - before;
}

void printRoundTrips(const QString &practice, int patient)
{
    qputenv("PGOPTIONS", "-c log_statement=all");
    bench::Host host(practice);
    if (statementsLogged() == 0)
        throw std::runtime_error("the server logs no statements");
    std::printf("%-30s %12s %12s\n", "round trips to painted form", "first time", "afterwards");
    for (const clivara::SectionGroup &group : clivara::sectionGroups()) {
        for (const clivara::Section &section : group.sections) {
            const int first = roundTrips(host, section.action, patient);
            std::printf("%-30s %12d %12d\n", qPrintable(section.plainTitle()), first,
                        roundTrips(host, section.action, patient));
        }
    }
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    return bench::runProgram("ServerBench", [&] {
        const QString serverPractice = required("CLIVARA_BENCH_SERVER");
        bench::Host files(bench::practicePath());
        bench::Host server(serverPractice);
        const int patient = bench::patientWithMostRows(*files.practice->environment().clinical);
        const auto add = [patient](const char *name, bench::Host &host, qint16 action) {
            host.openForm(action, patient); // the first time loads fonts and styles
            benchmark::RegisterBenchmark(name,
                                         [&host, action, patient](benchmark::State &state) {
                                             for (auto _ : state)
                                                 state.SetIterationTime(host.openForm(action, patient));
                                         })
                ->UseManualTime()
                ->Unit(benchmark::kMillisecond)
                ->Iterations(openings);
        };
        add("problems_files", files, problemsAction);
        add("problems_server", server, problemsAction);
        add("ldl_files", files, ldlAction);
        add("ldl_server", server, ldlAction);

        bench::MedianReporter reporter;
        bench::runInterleaved(argc, argv, reporter);
        printRoundTrips(serverPractice, patient);
        const bool problems =
            bench::hold("action 5 to painted form, server against files",
                        reporter.median("problems_server") / reporter.median("problems_files"), 3.0, "times");
        const bool ldl =
            bench::hold("action 80 to painted form, server against files",
                        reporter.median("ldl_server") / reporter.median("ldl_files"), 3.0, "times");
        return problems && ldl;
    });
}
