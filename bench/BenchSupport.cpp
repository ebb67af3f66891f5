// SPDX-License-Identifier: Apache-2.0
#include "BenchSupport.h"

#include "data/engine/Dao.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <vector>

namespace bench {

QString practicePath(bool large)
{
    const char *variable = large ? "CLIVARA_BENCH_PRACTICE_LARGE" : "CLIVARA_BENCH_PRACTICE";
    const QString path = qEnvironmentVariable(variable);
    if (path.isEmpty())
        throw std::runtime_error(std::string(variable) + " is not set: run scripts/bench");
    return path;
}

int patientWithMostRows(dao::Database &clinical)
{
    const auto rows = clinical.OpenRecordset(
        "SELECT cod_paz, count(*) AS n FROM riepil GROUP BY cod_paz ORDER BY count(*) DESC, cod_paz");
    if (rows->Eof())
        throw std::runtime_error("the practice has no prescriptions");
    return int(rows->Fields("cod_paz").number());
}

void MedianReporter::ReportRuns(const std::vector<Run> &runs)
{
    ConsoleReporter::ReportRuns(runs);
    for (const Run &run : runs) {
        if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median")
            m_medians[run.run_name.function_name] = run.GetAdjustedRealTime();
    }
}

double MedianReporter::median(const std::string &name) const
{
    const auto found = m_medians.find(name);
    return found == m_medians.end() ? 0 : found->second;
}

bool hold(const char *what, double figure, double limit, const char *unit)
{
    const bool holds = figure > 0 && figure <= limit;
    std::printf("%-6s %-60s %10.2f %s (limit %.2f)\n", holds ? "holds" : "FAILS", what, figure, unit, limit);
    return holds;
}

void runInterleaved(int argc, char **argv, MedianReporter &reporter)
{
    std::vector<char *> arguments(argv, argv + argc);
    char interleave[] = "--benchmark_enable_random_interleaving=true";
    char repetitions[] = "--benchmark_repetitions=9";
    char aggregates[] = "--benchmark_report_aggregates_only=true";
    arguments.insert(arguments.begin() + 1, {interleave, repetitions, aggregates});
    int count = int(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    benchmark::RunSpecifiedBenchmarks(&reporter);
}

} // namespace bench
