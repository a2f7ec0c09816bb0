#include "BareScan.h"
#include "BenchmarkServices.h"
#include "MixedFolder.h"
#include "QtScan.h"

#include "Freedesktop/Files/FreedesktopCollation.h"
#include "Freedesktop/Files/FreedesktopFileContents.h"
#include "Freedesktop/Files/FreedesktopFileManager.h"
#include "Freedesktop/Files/FreedesktopLog.h"
#include "Models/ItemsFolderScanner.h"

#include <benchmark/benchmark.h>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace marrowick::benchmarks {

namespace {

FixedDefaults* defaults = nullptr;

/// The services that a scan uses; the others are not asked for.
Platform makeServices()
{
    Platform services;
    services.log = std::make_unique<FreedesktopLog>();
    services.fileManager = std::make_unique<FreedesktopFileManager>();
    services.fileContents = std::make_unique<FreedesktopFileContents>();
    services.collation = std::make_unique<FreedesktopCollation>(BareScan::locale, *services.log);
    auto fixedDefaults = std::make_unique<FixedDefaults>();
    defaults = fixedDefaults.get();
    services.defaultsStore = std::move(fixedDefaults);
    return services;
}

/// The folder of a place and a size, made when it is first needed and kept until the end, since the repetitions of all
/// benchmarks take turns.
MixedFolder& folder(Place place, std::size_t entryCount)
{
    static std::map<std::pair<Place, std::size_t>, std::unique_ptr<MixedFolder>> folders;
    auto& slot = folders[{ place, entryCount }];
    if (!slot)
        slot = std::make_unique<MixedFolder>(place, entryCount);
    return *slot;
}

/// Measures the call of `scan`; what becomes of its result is not part of it.
template<typename Scan>
void registerScan(std::string const& what, Place place, std::size_t entryCount, bool isSorted, Scan scan)
{
    auto const name = what + '/' + nameOf(place) + '/' + std::to_string(entryCount);
    benchmark::RegisterBenchmark(name.c_str(),
        [=](benchmark::State& state) {
            auto& scanned = folder(place, entryCount);
            scanned.setSorted(isSorted);
            for (auto _ : state) {
                auto result = std::make_optional(scan(scanned.path()));
                state.PauseTiming();
                if (static_cast<std::size_t>(result->size()) != entryCount)
                    state.SkipWithError("not every entry was found");
                result.reset();
                state.ResumeTiming();
            }
        })
        ->MeasureProcessCPUTime()
        ->Unit(benchmark::kMicrosecond);
}

auto scanner(std::string const& sortMode)
{
    return [sortMode](std::string const& path) {
        defaults->sortMode = sortMode;
        return ItemsFolderScanner::children(FileURL(path), {}, true);
    };
}

void registerAll(BareScan const& bare)
{
    constexpr std::size_t usual = 10'000;
    for (auto const place : { Place::disk, Place::memory }) {
        registerScan("children alphabetical", place, usual, true, scanner("alphabetical"));
        registerScan("children by kind", place, usual, true, scanner("kindThenAlphabetical"));
        registerScan("children by date", place, usual, true, scanner("dateModified"));
        registerScan(
            "bare alphabetical", place, usual, true, [&](auto const& path) { return bare.alphabetical(path); });
        registerScan("bare by date", place, usual, true, [&](auto const& path) { return bare.dated(path); });
        registerScan(
            "bare by date and sorted", place, usual, true, [&](auto const& path) { return bare.datedAndSorted(path); });
        registerScan("QDir comparing", place, usual, true, scanComparing);
        registerScan("QDir with sort keys", place, usual, true, scanBySortKeys);
        for (std::size_t entryCount = 100; entryCount <= 100'000; entryCount *= 10) {
            registerScan("growth unsorted", place, entryCount, false, scanner("alphabetical"));
            registerScan("growth sorted", place, entryCount, true, scanner("alphabetical"));
        }
    }
}

}

}

int main(int argc, char** argv)
{
    using namespace marrowick;
    using namespace marrowick::benchmarks;
    PlatformScope const services(makeServices());
    BareScan const bare;
    registerAll(bare);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
