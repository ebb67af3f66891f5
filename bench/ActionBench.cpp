// SPDX-License-Identifier: Apache-2.0
// Action 80 from the call to the painted form, on the practice of 1,500 patients and on the one of 15,000;
// and the cardiovascular risk, which proposes more and shows what was saved.
#include "BenchHost.h"
#include "BenchSupport.h"

namespace {

constexpr qint16 ldlAction = 80;
constexpr qint16 riskAction = 13;
constexpr int patients = 64;

void openForms(benchmark::State &state, bench::Host &host, qint16 action)
{
    int patient = 0;
    for (auto _ : state)
        state.SetIterationTime(host.openForm(action, 1 + patient++ % patients));
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    return bench::runProgram("ActionBench", [&] {
        bench::Host small(bench::practicePath());
        bench::Host large(bench::practicePath(true));
        for (bench::Host *const host : {&small, &large}) {
            for (const qint16 action : {ldlAction, riskAction})
                host->openForm(action, 1); // the first time loads fonts and styles
        }
        const auto add = [](const char *name, bench::Host &host, qint16 action) {
            benchmark::RegisterBenchmark(
                name, [&host, action](benchmark::State &state) { openForms(state, host, action); })
                ->UseManualTime()
                ->Unit(benchmark::kMillisecond)
                ->Iterations(patients);
        };
        add("1500_patients", small, ldlAction);
        add("15000_patients", large, ldlAction);
        add("risk_15000_patients", large, riskAction);

        bench::MedianReporter reporter;
        bench::runInterleaved(argc, argv, reporter);
        const double milliseconds = reporter.median("1500_patients");
        const double growth = reporter.median("15000_patients") / milliseconds;
        const bool fast = bench::hold("action 80 to painted form", milliseconds, 16, "ms");
        const bool even = bench::hold("the same on ten times the patients", growth, 1.1, "times");
        const bool risk = bench::hold("action 13 to painted form, 15000 patients",
                                      reporter.median("risk_15000_patients"), 32, "ms");
        return fast && even && risk;
    });
}
