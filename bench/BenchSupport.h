// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <benchmark/benchmark.h>
#include <map>
#include <string>

namespace dao {
class Database;
}

namespace bench {

// The demo practice that scripts/bench has made: of 1,500 patients, or of 15,000. Throws std::runtime_error
// when the environment variable that names it is missing.
QString practicePath(bool large = false);

// The patient with the most prescriptions and tests. Throws std::runtime_error when there are none.
int patientWithMostRows(dao::Database &clinical);

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

// Runs all benchmarks with interleaved repetitions, so that two that are compared see the same machine.
void runInterleaved(int argc, char **argv, MedianReporter &reporter);

} // namespace bench
