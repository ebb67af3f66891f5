// SPDX-License-Identifier: Apache-2.0
// The laboratory query of the calculators: through the engine (Jet text in, every value out, nothing cached)
// against the same native SQL through SQLite's C interface on the same connection.
#include "BenchSupport.h"
#include "app/practice/Practice.h"
#include "dao/Dao.h"

#include <QCoreApplication>

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
    for (auto _ : state)
        values += bench::readThroughEngine(clinical, labQuery(firstPatient + patient++ % patients),
                                           dao::RecordsetType::Dynaset);
    bench::countValues(state, values);
}

void throughCInterface(benchmark::State &state, dao::Database &clinical)
{
    sqlite3 *const connection = bench::connectionOf(clinical);
    std::vector<bench::NativeQuery> queries;
    for (int patient = 0; patient < patients; ++patient)
        queries.push_back({clinical.nativeSql(labQuery(firstPatient + patient)).toUtf8()});
    int patient = 0;
    qint64 values = 0;
    for (auto _ : state)
        values += bench::readThroughCInterface(state, connection, queries[patient++ % patients]);
    bench::countValues(state, values);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    return bench::runProgram("LabQueryBench", [&] {
        const auto practice = orvale::Practice::open(bench::practicePath());
        dao::Database &clinical = *practice->environment().clinical;
        benchmark::RegisterBenchmark("engine",
                                     [&](benchmark::State &state) { throughEngine(state, clinical); });
        benchmark::RegisterBenchmark("c_interface",
                                     [&](benchmark::State &state) { throughCInterface(state, clinical); });

        bench::MedianReporter reporter;
        bench::runInterleaved(argc, argv, reporter);
        const double ratio = reporter.median("engine") / reporter.median("c_interface");
        return bench::hold("laboratory query: engine against the C interface", ratio, 2.0, "times");
    });
}
