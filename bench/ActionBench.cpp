// SPDX-License-Identifier: Apache-2.0
// Action 80 from the call to the painted form, on the practice of 1,500 patients and on the one of 15,000.
#include "BenchSupport.h"
#include "app/Practice.h"
#include "host/Class3.h"
#include "host/working_state/WorkingState.h"

#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QTimer>
#include <cstdio>

namespace {

constexpr qint16 ldlAction = 80;
constexpr int patients = 64;

class NoPrompts final : public clivara::Prompts {
public:
    clivara::PromptButton ask(const clivara::Prompt &) override
    {
        throw std::runtime_error("a message box appeared");
    }
};

// Notes the moment at which a dialog has been painted for the first time, then closes it.
class PaintWatch final : public QObject {
public:
    void start()
    {
        m_nanoseconds = 0;
        m_timer.start();
        qApp->installEventFilter(this);
    }
    qint64 nanoseconds() const { return m_nanoseconds; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        auto *dialog = qobject_cast<QDialog *>(watched);
        if (dialog && event->type() == QEvent::Paint) {
            qApp->removeEventFilter(this);
            // Runs when the paint of the whole window, children included, has gone to the screen.
            QTimer::singleShot(0, dialog, [this, dialog] {
                m_nanoseconds = m_timer.nsecsElapsed();
                dialog->close();
            });
        }
        return false;
    }

private:
    QElapsedTimer m_timer;
    qint64 m_nanoseconds = 0;
};

// A host on one practice, as a workstation runs it.
struct Host {
    explicit Host(const QString &path)
        : practice(orvale::Practice::open(path))
        , chart(services)
    {
        settings.write("medicoP", practice->firstDoctor().code);
        settings.write("medicoT", practice->firstDoctor().code);
        settings.write("CODICE REGIONE", practice->firstDoctor().region);
        chart.InitDbConn(practice->environment());
    }

    double openForm(int patient)
    {
        settings.write("CODICE PAZIENTE", patient);
        watch.start();
        chart.Action(ldlAction);
        if (watch.nanoseconds() == 0)
            throw std::runtime_error("action 80 painted no form");
        return double(watch.nanoseconds()) * 1e-9;
    }

    clivara::MemorySettings settings;
    clivara::SystemClock clock;
    NoPrompts prompts;
    clivara::SystemPauses pauses;
    clivara::SystemGuids guids;
    clivara::SystemMiddleware middleware;
    clivara::Services services{settings, clock, prompts, pauses, guids, middleware};
    std::unique_ptr<orvale::Practice> practice;
    clivara::Class3 chart;
    PaintWatch watch;
};

void openForms(benchmark::State &state, Host &host)
{
    int patient = 0;
    for (auto _ : state)
        state.SetIterationTime(host.openForm(1 + patient++ % patients));
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    try {
        Host small(bench::practicePath());
        Host large(bench::practicePath(true));
        small.openForm(1); // the first time loads fonts and styles
        large.openForm(1);
        for (const auto &[name, host] :
             {std::pair("1500_patients", &small), std::pair("15000_patients", &large)}) {
            benchmark::RegisterBenchmark(name, [host](benchmark::State &state) { openForms(state, *host); })
                ->UseManualTime()
                ->Unit(benchmark::kMillisecond)
                ->Iterations(patients);
        }

        bench::MedianReporter reporter;
        bench::runInterleaved(argc, argv, reporter);
        const double milliseconds = reporter.median("1500_patients");
        const double growth = reporter.median("15000_patients") / milliseconds;
        const bool fast = bench::hold("action 80 to painted form", milliseconds, 16, "ms");
        return bench::hold("the same on ten times the patients", growth, 1.1, "times") && fast ? 0 : 1;
    } catch (const std::exception &error) {
        std::fprintf(stderr, "ActionBench: %s\n", error.what());
        return 1;
    }
}
