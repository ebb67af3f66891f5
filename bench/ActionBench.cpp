// SPDX-License-Identifier: Apache-2.0
// Action 80 from the call to the painted form, on the practice of 1,500 patients and on the one of 15,000.
#include "BenchHost.h"
#include "BenchSupport.h"

#include <cstdio>

namespace {

constexpr qint16 ldlAction = 80;
constexpr int patients = 64;

void openForms(benchmark::State &state, bench::Host &host)
{
    int patient = 0;
    for (auto _ : state)
        state.SetIterationTime(host.openForm(ldlAction, 1 + patient++ % patients));
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    try {
        bench::Host small(bench::practicePath());
        bench::Host large(bench::practicePath(true));
        small.openForm(ldlAction, 1); // the first time loads fonts and styles
        large.openForm(ldlAction, 1);
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
