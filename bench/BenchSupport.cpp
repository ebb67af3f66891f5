// SPDX-License-Identifier: Apache-2.0
#include "BenchSupport.h"

#include "dao/sqlite/SqliteConnection.h"

#include <algorithm>
#include <cstdio>
#include <sqlite3.h>
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

sqlite3 *connectionOf(dao::Database &database)
{
    return dynamic_cast<dao::SqliteConnection &>(database.nativeConnection()).handle();
}

qint64 readThroughEngine(dao::Database &database, const QString &query, dao::RecordsetType type)
{
    qint64 values = 0;
    for (const auto rows = database.OpenRecordset(query, type); !rows->Eof(); rows->MoveNext()) {
        for (int column = 0; column < rows->FieldCount(); ++column, ++values)
            benchmark::DoNotOptimize(rows->Fields(column).Value());
    }
    return values;
}

qint64 readThroughCInterface(benchmark::State &state, sqlite3 *connection, const NativeQuery &query)
{
    qint64 values = 0;
    sqlite3_stmt *statement = nullptr;
    if (sqlite3_prepare_v2(connection, query.sql.constData(), -1, &statement, nullptr) != SQLITE_OK)
        state.SkipWithError(sqlite3_errmsg(connection));
    const int columns = std::min(query.columns, sqlite3_column_count(statement));
    while (sqlite3_step(statement) == SQLITE_ROW) {
        for (int column = 0; column < columns; ++column, ++values) {
            switch (sqlite3_column_type(statement, column)) {
            case SQLITE_INTEGER:
                benchmark::DoNotOptimize(sqlite3_column_int64(statement, column));
                break;
            case SQLITE_FLOAT:
                benchmark::DoNotOptimize(sqlite3_column_double(statement, column));
                break;
            case SQLITE_TEXT:
                benchmark::DoNotOptimize(sqlite3_column_text(statement, column));
                break;
            default:
                break;
            }
        }
    }
    sqlite3_finalize(statement);
    return values;
}

void countValues(benchmark::State &state, qint64 values)
{
    state.counters["values"] = benchmark::Counter(double(values), benchmark::Counter::kAvgIterations);
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

int runProgram(const char *name, const std::function<bool()> &figures)
{
    try {
        return figures() ? 0 : 1;
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s: %s\n", name, error.what());
        return 1;
    }
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
