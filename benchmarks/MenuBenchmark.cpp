#include "BareMenu.h"
#include "BenchmarkServices.h"
#include "FirstPaint.h"
#include "MixedFolder.h"

#include "Menus/MenuBuilder.h"
#include "Platform/Platform.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <string>

namespace marrowick::benchmarks {

namespace {

/// Pops a menu up and returns what keeps it alive.
using PopUp = std::function<std::shared_ptr<void>()>;

/// From the click to the menu's first painting. Closing it is not part of the measure.
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

void registerMenu(std::string const& name, PopUp popUp)
{
    benchmark::RegisterBenchmark(
        name.c_str(), [popUp = std::move(popUp)](benchmark::State& state) { measureFirstPaint(state, popUp); })
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

void registerAll(std::map<std::size_t, std::unique_ptr<MixedFolder>>& folders)
{
    for (std::size_t const entryCount : { 1'000, 10'000 }) {
        folders[entryCount] = std::make_unique<MixedFolder>(Place::memory, entryCount);
        auto const& path = folders[entryCount]->path();
        registerMenu("menu marrowick/" + std::to_string(entryCount), [&path] {
            auto menu = MenuBuilder::buildItemsMenu("", FileURL(path), std::nullopt);
            platform().menuPresenter->popUp(menu, nullptr);
            return menu;
        });
        registerMenu("menu bare/" + std::to_string(entryCount),
            [entries = bareEntries(path)] { return std::static_pointer_cast<void>(popUpBareMenu(entries)); });
    }
}

}

}

int main(int argc, char** argv)
{
    using namespace marrowick;
    using namespace marrowick::benchmarks;
    auto services = makePlatform(argc, argv);
    services.defaultsStore = std::make_unique<FixedDefaults>();
    PlatformScope const scope(std::move(services));
    std::map<std::size_t, std::unique_ptr<MixedFolder>> folders;
    registerAll(folders);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
