// SPDX-License-Identifier: Apache-2.0
// The regional sheets of the patient with most rows: everything that a new diabetes sheet takes from the
// record, and each extraction routine against the SQL that it ran, prepared and read again through SQLite's C
// interface.
#include "BenchSupport.h"
#include "app/practice/Practice.h"
#include "regional/ModEstrazDati.h"
#include "regional/SheetData.h"
#include "regional/SheetSources.h"
#include "support/Clock.h"
#include "support/Log.h"

#include <QCoreApplication>
#include <functional>
#include <sqlite3.h>
#include <vector>

namespace {

using clivara::ModEstrazDati;

struct Routine {
    std::string name;
    std::function<void(const ModEstrazDati &)> run;
};

std::vector<Routine> routines(int patient, const clivara::Period &year)
{
    const auto glycated = QStringLiteral("(RIEPIL2.codice = '90.28.1')");
    const auto hypertension = QStringLiteral("401.*;402.*;403.*;404.*;405.*");
    return {
        {"ContaPrescrizioniOspedaliere",
         [=](const ModEstrazDati &data) {
             benchmark::DoNotOptimize(data.ContaPrescrizioniOspedaliere(patient, year));
         }},
        {"SommaConfezioniATC",
         [=](const ModEstrazDati &data) {
             benchmark::DoNotOptimize(data.SommaConfezioniATC(patient, "C10AA*", year));
         }},
        {"SommaConfezioniCodSan",
         [=](const ModEstrazDati &data) {
             benchmark::DoNotOptimize(data.SommaConfezioniCodSan(patient, "H1*", year));
         }},
        {"UltimoRischioCardio",
         [=](const ModEstrazDati &data) {
             benchmark::DoNotOptimize(data.UltimoRischioCardio(patient, year));
         }},
        {"UltimoEsameLab",
         [=](const ModEstrazDati &data) {
             clivara::LabResult result;
             benchmark::DoNotOptimize(data.UltimoEsameLab(patient, year, glycated, result));
         }},
        {"EsisteEsameLab",
         [=](const ModEstrazDati &data) {
             benchmark::DoNotOptimize(data.EsisteEsameLab(patient, year, glycated));
         }},
        {"DatiAntropometrici",
         [=](const ModEstrazDati &data) {
             clivara::Anthropometry body;
             benchmark::DoNotOptimize(data.DatiAntropometrici(patient, year, body));
         }},
        {"PressioneMassima",
         [=](const ModEstrazDati &data) {
             clivara::Pressure pressure;
             benchmark::DoNotOptimize(data.PressioneMassima(patient, year, pressure));
         }},
        {"PressioneMinima",
         [=](const ModEstrazDati &data) {
             clivara::Pressure pressure;
             benchmark::DoNotOptimize(data.PressioneMinima(patient, year, pressure));
         }},
        {"EsisteProblemaICD",
         [=](const ModEstrazDati &data) {
             benchmark::DoNotOptimize(data.EsisteProblemaICD(patient, hypertension));
         }},
        {"UltimoProblemaICD",
         [=](const ModEstrazDati &data) {
             benchmark::DoNotOptimize(data.UltimoProblemaICD(patient, hypertension));
         }},
        {"StatoFumo",
         [=](const ModEstrazDati &data) {
             QDate date;
             benchmark::DoNotOptimize(data.StatoFumo(patient, date));
         }},
    };
}

// The queries that a routine runs, as SQLite sees them; what the engine asks for itself now and then is left
// out.
std::vector<QByteArray> statementsOf(const Routine &routine, const ModEstrazDati &data, sqlite3 *connection)
{
    routine.run(data); // the first time the engine also asks for the tables' definitions
    std::vector<QByteArray> statements;
    sqlite3_trace_v2(
        connection, SQLITE_TRACE_STMT,
        [](unsigned, void *context, void *statement, void *) {
            char *const sql = sqlite3_expanded_sql(static_cast<sqlite3_stmt *>(statement));
            static_cast<std::vector<QByteArray> *>(context)->emplace_back(sql);
            sqlite3_free(sql);
            return 0;
        },
        &statements);
    routine.run(data);
    sqlite3_trace_v2(connection, 0, nullptr, nullptr);
    std::erase_if(statements,
                  [](const QByteArray &sql) { return !sql.trimmed().toUpper().startsWith("SELECT"); });
    if (statements.size() != 1)
        throw std::runtime_error(routine.name + " did not run one query");
    return statements;
}

// What the routines do at least: prepare, read the first row.
void throughCInterface(benchmark::State &state, sqlite3 *connection,
                       const std::vector<QByteArray> &statements)
{
    for (auto _ : state) {
        for (const QByteArray &sql : statements) {
            sqlite3_stmt *statement = nullptr;
            if (sqlite3_prepare_v2(connection, sql.constData(), -1, &statement, nullptr) != SQLITE_OK)
                state.SkipWithError(sqlite3_errmsg(connection));
            if (sqlite3_step(statement) == SQLITE_ROW) {
                for (int column = 0, count = sqlite3_column_count(statement); column < count; ++column)
                    benchmark::DoNotOptimize(sqlite3_column_text(statement, column));
            }
            sqlite3_finalize(statement);
        }
    }
}

void fillDiabetesSheet(benchmark::State &state, const ModEstrazDati &data,
                       const clivara::SheetPatient &patient)
{
    qsizetype found = 0;
    for (auto _ : state) {
        clivara::SheetData sheet(*clivara::sheetLayout(1));
        found += clivara::RecuperaDati(sheet, data, patient).origins.size();
    }
    bench::countValues(state, found);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    return bench::runProgram("SheetsBench", [&] {
        const auto practice = orvale::Practice::open(bench::practicePath());
        dao::Database &clinical = *practice->environment().clinical;
        sqlite3 *const connection = bench::connectionOf(clinical);
        clivara::SystemClock clock;
        clivara::Log log(clock);
        const ModEstrazDati data(clinical, log);
        const int patient = bench::patientWithMostRows(clinical);
        const clivara::Period year{clock.today().addYears(-1), clock.today()};

        const std::vector<Routine> all = routines(patient, year);
        for (const Routine &routine : all) {
            benchmark::RegisterBenchmark(routine.name.c_str(), [&](benchmark::State &state) {
                for (auto _ : state)
                    routine.run(data);
            });
            benchmark::RegisterBenchmark(
                (routine.name + "_c").c_str(),
                [&, statements = statementsOf(routine, data, connection)](benchmark::State &state) {
                    throughCInterface(state, connection, statements);
                });
        }
        benchmark::RegisterBenchmark("RecuperaDati", [&](benchmark::State &state) {
            fillDiabetesSheet(state, data, {patient, 70, clock.today()});
        });

        bench::MedianReporter reporter;
        bench::runInterleaved(argc, argv, reporter);
        bool holds = true;
        for (const Routine &routine : all)
            holds &= bench::hold((routine.name + " against the C interface").c_str(),
                                 reporter.median(routine.name) / reporter.median(routine.name + "_c"), 2.0,
                                 "times");
        holds &= bench::hold("all that a new diabetes sheet takes from the record",
                             reporter.median("RecuperaDati") * 1e-6, 50, "ms");
        return holds;
    });
}
