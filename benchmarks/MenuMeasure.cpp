#include "MenuMeasure.h"

#include "FirstPaint.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <utility>

namespace marrowick::benchmarks {

namespace {

void measureFirstPaint(benchmark::State& state, PopUp const& popUp)
{
    double cpuTime = 0;
    for (auto _ : state) {
        FirstPaint paint;
        auto const menu = popUp();
        if (!paint.wait(std::chrono::seconds(30))) {
            state.SkipWithError("no menu was painted");
            break;
        }
        state.SetIterationTime(paint.wallTime().count());
        cpuTime += paint.cpuTime().count();
        closeMenus();
    }
    state.counters["cpu_ms"] = benchmark::Counter(cpuTime * 1000, benchmark::Counter::kAvgIterations);
}

}

void registerMenu(std::string const& name, PopUp popUp)
{
    benchmark::RegisterBenchmark(
        name.c_str(), [popUp = std::move(popUp)](benchmark::State& state) { measureFirstPaint(state, popUp); })
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

}
