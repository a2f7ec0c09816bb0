#include "BareMenu.h"
#include "BenchmarkServices.h"
#include "FirstPaint.h"
#include "InstalledCrowd.h"
#include "MenuMeasure.h"
#include "WindowCrowd.h"

#include "Menus/AllAppsMenuBuilder.h"
#include "Menus/ProcessesMenuBuilder.h"
#include "Platform/Platform.h"

#include <benchmark/benchmark.h>

#include <QIcon>
#include <QImage>
#include <QPixmap>

#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

namespace marrowick::benchmarks {

namespace {

constexpr std::size_t applicationCount = 500;
constexpr std::size_t windowCount = 200;

/// Every second window belongs to an installed application, the others bring their pictures along.
std::vector<WindowCrowd::Window> windowsAmong(std::vector<InstalledCrowd::Application> const& applications)
{
    std::vector<WindowCrowd::Window> windows;
    for (std::size_t i = 0; i < windowCount; ++i) {
        if (i % 2 == 0)
            windows.push_back({ applications[i].wmClass, false });
        else
            windows.push_back({ "Stranger" + std::to_string(i), true });
    }
    return windows;
}

std::vector<BareAction> bareApplications(std::vector<InstalledCrowd::Application> const& applications)
{
    std::vector<BareAction> actions;
    for (auto const& application : applications)
        actions.push_back(
            { QString::fromStdString(application.name), QString::fromStdString(application.iconName), {} });
    return actions;
}

std::vector<BareAction> bareProcesses(std::vector<InstalledCrowd::Application> const& applications)
{
    QImage picture(48, 48, QImage::Format_ARGB32);
    picture.fill(QColor(0x30, 0x70, 0xB0));
    std::vector<BareAction> actions;
    for (auto const& window : windowsAmong(applications)) {
        BareAction action { QString::fromStdString(window.wmClass), {}, {} };
        if (window.hasPicture)
            action.icon = QIcon(QPixmap::fromImage(picture));
        else
            action.iconName = QString::fromStdString(applications[actions.size()].iconName);
        actions.push_back(std::move(action));
    }
    return actions;
}

std::shared_ptr<void> popUp(std::shared_ptr<MWMenu> menu)
{
    platform().menuPresenter->popUp(menu, nullptr);
    return menu;
}

/// Whether the menus hold what they are measured with. Opened once, what is kept between openings is there.
bool isComplete(std::shared_ptr<MWMenu> const& menu, std::size_t entryCount)
{
    FirstPaint paint;
    platform().menuPresenter->popUp(menu, nullptr);
    bool const isPainted = paint.wait(std::chrono::seconds(30));
    auto const found = menu->items().size();
    closeMenus();
    if (!isPainted || found < entryCount) {
        std::fprintf(stderr, "%s: %zu entries, %zu were made\n", menu->title.c_str(), found, entryCount);
        return false;
    }
    return true;
}

void registerAll(std::vector<InstalledCrowd::Application> const& applications)
{
    registerMenu("applications marrowick", [] { return popUp(AllAppsMenuBuilder::build()); });
    registerMenu("applications bare",
        [actions = bareApplications(applications)] { return std::static_pointer_cast<void>(popUpBareMenu(actions)); });
    registerMenu("processes marrowick", [] { return popUp(ProcessesMenuBuilder::build(false)); });
    registerMenu("processes bare",
        [actions = bareProcesses(applications)] { return std::static_pointer_cast<void>(popUpBareMenu(actions)); });
}

}

}

int main(int argc, char** argv)
{
    using namespace marrowick;
    using namespace marrowick::benchmarks;
    InstalledCrowd const installed(applicationCount);
    WindowCrowd const windows(windowsAmong(installed.applications()));
    if (!windows.isShown())
        return 2;
    auto services = makePlatform(argc, argv);
    services.defaultsStore = std::make_unique<FixedDefaults>();
    PlatformScope const scope(std::move(services));
    if (!isComplete(AllAppsMenuBuilder::build(), applicationCount)
        || !isComplete(ProcessesMenuBuilder::build(false), windowCount))
        return 2;
    registerAll(installed.applications());
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
