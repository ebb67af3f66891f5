// SPDX-License-Identifier: Apache-2.0
// The problem-oriented record of the patient with most rows: from action 5 to the painted form, from one
// problem to the next, and the queries of the lower list through the engine against the same native SQL
// through SQLite's C interface.
#include "BenchHost.h"
#include "BenchSupport.h"
#include "problems/ProblemItems.h"

#include <QKeyEvent>
#include <QTreeView>

namespace {

constexpr qint16 problemsAction = 5;
constexpr qint16 noProblemAction =
    16; // the same form with nothing selected: it shows what is filed under none
constexpr int openings = 20;

void openForms(benchmark::State &state, bench::Host &host, int patient)
{
    // The row under which most is filed stays selected from here on.
    host.openForm(noProblemAction, patient);
    for (auto _ : state)
        state.SetIterationTime(host.openForm(problemsAction, patient));
}

// Counts how often a widget is painted.
class PaintCount final : public QObject {
public:
    explicit PaintCount(QWidget *widget) { widget->installEventFilter(this); }
    int count = 0;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        count += event->type() == QEvent::Paint;
        return false;
    }
};

// Presses the arrow keys through all problems, down and up again; one iteration is one change of the selected
// problem, from the key to the painted lists.
void changeProblem(benchmark::State &state, bench::Host &host, int patient)
{
    host.openForm(problemsAction, patient, [&](QDialog &form) {
        auto *problems = form.findChild<QTreeView *>("ReportControl1_0");
        const int last = problems->model()->rowCount() - 1;
        PaintCount paints(form.findChild<QTreeView *>("ReportControl1_1")->viewport());
        PaintCount empties(form.findChild<QWidget *>("SSPanel1"));
        problems->setFocus();
        QApplication::processEvents();
        bool down = problems->currentIndex().row() < last;
        for (auto _ : state) {
            const int before = problems->currentIndex().row();
            const int painted = paints.count + empties.count;
            QElapsedTimer timer;
            timer.start();
            QKeyEvent key(QEvent::KeyPress, down ? Qt::Key_Down : Qt::Key_Up, Qt::NoModifier);
            QApplication::sendEvent(problems, &key);
            QApplication::processEvents();
            state.SetIterationTime(double(timer.nsecsElapsed()) * 1e-9);
            const int now = problems->currentIndex().row();
            if (now == before || paints.count + empties.count == painted)
                throw std::runtime_error("the arrow key did not change the lists");
            down = now == last ? false : now == 0 ? true : down;
        }
    });
}

// The three queries of each row of the problem list, as the form runs them.
QStringList itemQueries(dao::Database &clinical, int patient)
{
    const auto visits = QStringLiteral(
        "SELECT VISITAPROBL.*, PROBLEMS.*, TIPOVISITA.*, SINTOMI.* FROM ((VISITAPROBL LEFT JOIN PROBLEMS ON "
        "VISITAPROBL.id_Probl = PROBLEMS.idProblems) LEFT JOIN TIPOVISITA ON VISITAPROBL.IDTIPO = "
        "TIPOVISITA.IdTipo) LEFT JOIN SINTOMI ON VISITAPROBL.SINTOMO = SINTOMI.CODICE Where "
        "(VISITAPROBL.cod_paz = %1) %2 order by VISITAPROBL.datareg desc");
    const auto drugs =
        QStringLiteral("SELECT RIEPIL.DA_PRE, RIEPIL.COD_PRE, RIEPIL.MINSAN, RIEPIL.NUM_CONF, "
                       "SPEFAR.SPECIALITA, RIEPIL.COD_PAZ FROM RIEPIL INNER JOIN SPEFAR ON RIEPIL.MINSAN = "
                       "SPEFAR.CODSPE WHERE ((riepil.tipo = 0) and (RIEPIL.COD_PAZ=%1) %2) %3");
    const auto tests = QStringLiteral(
        "select riepil.da_pre, riepil.cod_pre, riepil.minsan, riepil.tipo, riepil2.*, esami.* from riepil, "
        "riepil2, esami Where (riepil.cod_paz = %1) and (riepil.tipo > 0) and (riepil.tipo = esami.tipo_esa) "
        "and (riepil.tipo < 20) and (riepil.minsan = riepil2.cod_rie) %3 %2 order by riepil.da_pre , "
        "riepil.tipo");
    QStringList queries;
    const auto append = [&](const QString &filedUnder, const QString &since, const QString &diagnosis) {
        queries << visits.arg(patient).arg(filedUnder) << drugs.arg(patient).arg(since, diagnosis)
                << tests.arg(patient).arg(since, diagnosis);
    };
    append("and ( (id_probl <= 0) or isnull(id_probl) )", {},
           "and (isnull(riepil.cod_dia) or (TRIM(riepil.cod_dia)=''))");
    const auto problems =
        clinical.OpenRecordset(QStringLiteral("select * from PROBLEMS where cod_paz=%1").arg(patient));
    for (; !problems->Eof(); problems->MoveNext()) {
        append(QStringLiteral("and (VISITAPROBL.id_probl = %1)").arg(problems->Fields("idProblems").number()),
               QStringLiteral("and (riepil.da_pre >= cdate('%1 00.00.00'))")
                   .arg(problems->Fields("DataInizio").date().toString(u"dd/MM/yyyy")),
               QStringLiteral("and (riepil.cod_dia = '%1')").arg(problems->Fields("CodICDSospetto").text()));
    }
    return queries;
}

void throughEngine(benchmark::State &state, dao::Database &local, const QStringList &queries)
{
    qint64 values = 0;
    for (auto _ : state) {
        for (const QString &query : queries)
            values += bench::readThroughEngine(local, query, dao::RecordsetType::Snapshot);
    }
    bench::countValues(state, values);
}

void throughCInterface(benchmark::State &state, dao::Database &local, const QStringList &queries)
{
    sqlite3 *const connection = bench::connectionOf(local);
    std::vector<bench::NativeQuery>
        statements; // the engine asks for identities of the rows beside the columns
    for (const QString &query : queries)
        statements.push_back({local.nativeSql(query).toUtf8(), local.OpenRecordset(query)->FieldCount()});
    qint64 values = 0;
    for (auto _ : state) {
        for (const bench::NativeQuery &statement : statements)
            values += bench::readThroughCInterface(state, connection, statement);
    }
    bench::countValues(state, values);
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    return bench::runProgram("ProblemsBench", [&] {
        bench::Host host(bench::practicePath());
        const auto &databases = host.practice->environment();
        const int patient = bench::patientWithMostRows(*databases.clinical);
        host.openForm(problemsAction, patient); // the first time loads fonts and styles, and links the tables
        const QStringList queries = itemQueries(*databases.clinical, patient);

        benchmark::RegisterBenchmark("open_form",
                                     [&](benchmark::State &state) { openForms(state, host, patient); })
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond)
            ->Iterations(openings);
        benchmark::RegisterBenchmark("change_problem",
                                     [&](benchmark::State &state) { changeProblem(state, host, patient); })
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond)
            ->Iterations(openings);
        benchmark::RegisterBenchmark("queries_engine", [&](benchmark::State &state) {
            throughEngine(state, *databases.local, queries);
        })->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("queries_c_interface", [&](benchmark::State &state) {
            throughCInterface(state, *databases.local, queries);
        })->Unit(benchmark::kMillisecond);

        bench::MedianReporter reporter;
        bench::runInterleaved(argc, argv, reporter);
        bool holds =
            bench::hold("action 5 to the painted problem list", reporter.median("open_form"), 33, "ms");
        holds &= bench::hold("changing the selected problem", reporter.median("change_problem"), 16, "ms");
        const double ratio = reporter.median("queries_engine") / reporter.median("queries_c_interface");
        holds &=
            bench::hold("queries of the lower list: engine against the C interface", ratio, 2.0, "times");
        return holds;
    });
}
