#include "ProgramRun.h"
#include "TrayWatcher.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>
#include <thread>

namespace marrowick::benchmarks {

namespace {

using namespace std::chrono_literals;

constexpr auto patience = 20s;
constexpr auto settlingTime = 3s;
/// Half a minute after the last painting the toolkit clears its cache of pictures, once, in both programs.
constexpr auto cacheTime = 32s;
constexpr auto idleTime = 30s;

struct Programs {
    std::string marrowick;
    std::string bare;
};

/// Both lie beside this one.
Programs findPrograms()
{
    auto const folder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    return { folder / "marrowick", folder / "marrowick-benchmark-tray" };
}

/// From `exec` to the icon in the status area.
void measureStart(benchmark::State& state, TrayWatcher& tray, std::string const& program)
{
    for (auto _ : state) {
        tray.reset();
        auto const start = std::chrono::steady_clock::now();
        ProgramRun run({ program });
        if (!tray.waitForIcon(patience)) {
            state.SkipWithError("no icon came");
            break;
        }
        state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
        state.counters["cpu_ms"] = run.cpuTime().count();
    }
}

/// Both programs at rest side by side: the memory that only they use, and how often they woke up.
void measureIdle(benchmark::State& state, TrayWatcher& tray, Programs const& programs)
{
    for (auto _ : state) {
        tray.reset();
        ProgramRun marrowick({ programs.marrowick });
        bool const marrowickShows = tray.waitForIcon(patience);
        tray.reset();
        ProgramRun bare({ programs.bare });
        if (!marrowickShows || !tray.waitForIcon(patience)) {
            state.SkipWithError("no icon came");
            break;
        }
        std::this_thread::sleep_for(settlingTime);
        state.counters["marrowick_private_dirty_kb"] = static_cast<double>(marrowick.privateDirtyKilobytes());
        state.counters["bare_private_dirty_kb"] = static_cast<double>(bare.privateDirtyKilobytes());

        std::this_thread::sleep_for(cacheTime);
        auto const marrowickBefore = marrowick.contextSwitches();
        auto const bareBefore = bare.contextSwitches();
        std::this_thread::sleep_for(idleTime);
        state.counters["marrowick_wakeups"] = static_cast<double>(marrowick.contextSwitches() - marrowickBefore);
        state.counters["bare_wakeups"] = static_cast<double>(bare.contextSwitches() - bareBefore);
        state.SetIterationTime(std::chrono::duration<double>(idleTime).count());
    }
}

void registerAll(TrayWatcher& tray, Programs const& programs)
{
    auto const registerStart = [&](char const* name, std::string const& program) {
        benchmark::RegisterBenchmark(name, [&](benchmark::State& state) { measureStart(state, tray, program); })
            ->Iterations(1)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    };
    registerStart("start marrowick", programs.marrowick);
    registerStart("start bare", programs.bare);
    benchmark::RegisterBenchmark("idle", [&](benchmark::State& state) { measureIdle(state, tray, programs); })
        ->Iterations(1)
        ->UseManualTime()
        ->Unit(benchmark::kSecond);
}

}

}

int main(int argc, char** argv)
{
    using namespace marrowick::benchmarks;
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    TrayWatcher tray;
    ProgramRun const host({ "trayer" });
    if (!tray.waitForTray(patience)) {
        std::fprintf(stderr, "trayer did not become the status area\n");
        return 2;
    }
    auto const programs = findPrograms();
    registerAll(tray, programs);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
