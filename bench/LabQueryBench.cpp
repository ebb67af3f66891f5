// SPDX-License-Identifier: Apache-2.0
// The laboratory query of the calculators: through the engine (Jet text in, every value out, nothing cached)
// against the same native SQL through SQLite's C interface on the same connection.
#include "BenchSupport.h"
#include "app/Practice.h"
#include "data/engine/Dao.h"

#include <QCoreApplication>
#include <QSqlDriver>
#include <cstdio>
#include <sqlite3.h>

namespace {

QString labQuery(int patient)
{
    return QStringLiteral(
               "SELECT r2.*, r.* FROM riepil AS r, riepil2 AS r2 WHERE (r2.codice = '90.14.3') and "
               "(r2.cod_rie = r.minsan) and (r.tipo = 1) and (r.cod_paz =  ")
           + QString::number(patient) + QStringLiteral(") ORDER BY r.da_pre DESC");
}

constexpr int firstPatient = 1;
constexpr int patients = 64;

void throughEngine(benchmark::State &state, dao::Database &clinical)
{
    int patient = 0;
    qint64 values = 0;
    for (auto _ : state) {
        const auto rows = clinical.OpenRecordset(labQuery(firstPatient + patient++ % patients));
        for (; !rows->Eof(); rows->MoveNext()) {
            for (int column = 0; column < rows->FieldCount(); ++column, ++values)
                benchmark::DoNotOptimize(rows->Fields(column).Value());
        }
    }
    state.counters["values"] = benchmark::Counter(double(values), benchmark::Counter::kAvgIterations);
}

void throughCInterface(benchmark::State &state, dao::Database &clinical, sqlite3 *connection)
{
    std::vector<QByteArray> statements;
    for (int patient = 0; patient < patients; ++patient)
        statements.push_back(clinical.nativeSql(labQuery(firstPatient + patient)).toUtf8());
    int patient = 0;
    qint64 values = 0;
    for (auto _ : state) {
        sqlite3_stmt *statement = nullptr;
        if (sqlite3_prepare_v2(connection, statements[patient++ % patients].constData(), -1, &statement,
                               nullptr)
            != SQLITE_OK)
            state.SkipWithError(sqlite3_errmsg(connection));
        while (sqlite3_step(statement) == SQLITE_ROW) {
            for (int column = 0, count = sqlite3_column_count(statement); column < count;
                 ++column, ++values) {
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
    }
    state.counters["values"] = benchmark::Counter(double(values), benchmark::Counter::kAvgIterations);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    try {
        const auto practice = orvale::Practice::open(bench::practicePath());
        dao::Database &clinical = *practice->environment().clinical;
        auto *connection =
            *static_cast<sqlite3 *const *>(clinical.nativeConnection().driver()->handle().constData());
        benchmark::RegisterBenchmark("engine",
                                     [&](benchmark::State &state) { throughEngine(state, clinical); });
        benchmark::RegisterBenchmark(
            "c_interface", [&](benchmark::State &state) { throughCInterface(state, clinical, connection); });

        bench::MedianReporter reporter;
        bench::runInterleaved(argc, argv, reporter);
        const double ratio = reporter.median("engine") / reporter.median("c_interface");
        return bench::hold("laboratory query: engine against the C interface", ratio, 2.0, "times") ? 0 : 1;
    } catch (const std::exception &error) {
        std::fprintf(stderr, "LabQueryBench: %s\n", error.what());
        return 1;
    }
}
