#include "BareMenu.h"
#include "BenchmarkServices.h"
#include "MenuMeasure.h"
#include "MixedFolder.h"

#include "Menus/MenuBuilder.h"
#include "Platform/Platform.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <map>
#include <memory>
#include <string>

namespace marrowick::benchmarks {

namespace {

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
