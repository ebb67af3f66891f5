// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/Dao.h"

#include <QByteArray>
#include <QString>
#include <benchmark/benchmark.h>
#include <climits>
#include <functional>
#include <map>
#include <string>

struct sqlite3;

namespace bench {

// The demo practice that scripts/bench has made: of 1,500 patients, or of 15,000. Throws std::runtime_error
// when the environment variable that names it is missing.
QString practicePath(bool large = false);

// The patient with the most prescriptions and tests. Throws std::runtime_error when there are none.
int patientWithMostRows(dao::Database &clinical);

// The connection under a database in a file, for SQLite's own C interface.
sqlite3 *connectionOf(dao::Database &database);

// Every value of every row of a query, through the engine and through the C interface; the number of values.
// Of the native query's columns the first `columns` are read.
qint64 readThroughEngine(dao::Database &database, const QString &query, dao::RecordsetType type);
struct NativeQuery {
    QByteArray sql;
    int columns = INT_MAX;
};
qint64 readThroughCInterface(benchmark::State &state, sqlite3 *connection, const NativeQuery &query);

// How many values a round of the benchmark read, beside its time.
void countValues(benchmark::State &state, qint64 values);

// Prints the usual table and keeps the median of every benchmark, for the ratios and limits below it.
class MedianReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run> &runs) override;
    // Median real time in nanoseconds; 0 when the benchmark did not run.
    double median(const std::string &name) const;

private:
    std::map<std::string, double> m_medians;
};

// A figure against its limit: prints one line and returns whether it holds.
bool hold(const char *what, double figure, double limit, const char *unit);

// Runs a benchmark program: 0 when `figures` says that all limits hold, 1 when not or when it throws, which
// is printed.
int runProgram(const char *name, const std::function<bool()> &figures);

// Runs all benchmarks with interleaved repetitions, so that two that are compared see the same machine.
void runInterleaved(int argc, char **argv, MedianReporter &reporter);

} // namespace bench
