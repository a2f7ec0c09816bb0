#include "Menus/ProcessesMenuBuilder.h"

#include "Menus/MWProcessMenuTarget.h"
#include "Platform/Platform.h"
#include "Support/Preferences.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

namespace marrowick {

namespace {

using Applications = std::vector<std::shared_ptr<RunningApplication>>;

constexpr int iconSize = 16;
constexpr double opacityOfHidden = 0.4;

Applications listedApplications(bool includeBackgroundOnly)
{
    auto applications = platform().workspace->runningApplications(
        includeBackgroundOnly ? BackgroundOnly::included : BackgroundOnly::leftOut);
    auto const own = platform().application->bundleIdentifier();
    std::erase_if(applications, [&](auto const& application) {
        return application->bundleIdentifier() == own
            || (!includeBackgroundOnly && application->activationPolicy() == ActivationPolicy::prohibited);
    });
    return applications;
}

Applications sortedByName(Applications const& applications)
{
    std::vector<std::string> names;
    names.reserve(applications.size());
    for (auto const& application : applications)
        names.push_back(application->localizedName().value_or(std::string()));
    auto const prepared = platform().collation->prepare({ names.begin(), names.end() });
    std::vector<std::size_t> order(applications.size());
    std::iota(order.begin(), order.end(), std::size_t { 0 });
    std::stable_sort(
        order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return prepared->compare(a, b) < 0; });
    Applications sorted;
    sorted.reserve(applications.size());
    for (auto const position : order)
        sorted.push_back(applications[position]);
    return sorted;
}

std::shared_ptr<MenuItem> entryOf(std::shared_ptr<RunningApplication> const& application)
{
    auto item = MenuItem::make(application->localizedName().value_or("(unknown)"),
        [](MenuItem& sender) { MWProcessMenuTarget::shared().chooseProcess(sender); });
    item->representedObject = application;
    auto icon = application->icon();
    icon.pointSize = iconSize;
    if (application->isHidden())
        icon.opacity = opacityOfHidden;
    item->image = std::move(icon);
    return item;
}

}

std::shared_ptr<MWMenu> ProcessesMenuBuilder::build(bool includeBackgroundOnly)
{
    auto menu = MWMenu::make("Processes");
    menu->refresh = [weakMenu = std::weak_ptr(menu), includeBackgroundOnly] {
        auto const self = weakMenu.lock();
        if (!self)
            return;
        self->removeAllItems();
        auto const isControlHeld = platform().events->modifierFlags().contains(modifier::control);
        populate(*self, includeBackgroundOnly || isControlHeld);
    };
    return menu;
}

void ProcessesMenuBuilder::populate(MWMenu& menu, bool includeBackgroundOnly)
{
    auto applications = listedApplications(includeBackgroundOnly);
    if (Preferences::shared().sortProcessMenu())
        applications = sortedByName(applications);
    for (auto const& application : applications)
        menu.addItem(entryOf(application));
    if (menu.items().empty()) {
        auto item = MenuItem::make("(No processes)");
        item->isEnabled = false;
        menu.addItem(std::move(item));
    }
    if (Preferences::shared().addMarrowickToProcessMenu()) {
        menu.addItem(MenuItem::makeSeparator());
        menu.addItem(MenuItem::make(
            "Marrowick Preferences…", [](MenuItem&) { MWProcessMenuTarget::shared().openPreferences(); }));
    }
}

}
