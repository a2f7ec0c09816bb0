#include "Menus/AllAppsMenuBuilder.h"

#include "Menus/GeneratedMenu.h"
#include "Menus/InstalledItems.h"
#include "Platform/Platform.h"

#include <iterator>
#include <string>
#include <utility>
#include <variant>

namespace marrowick {

namespace {

constexpr int deepestFolder = 2;

/// Unlike the setting of that name, anything but a stored "no" counts as yes.
bool showsExtensions()
{
    auto const stored = platform().defaultsStore->object("tossDotAppExtension");
    auto const* const tosses = stored ? std::get_if<bool>(&*stored) : nullptr;
    return tosses && !*tosses;
}

std::vector<InstalledEntry> applications()
{
    bool const keepsExtension = showsExtensions();
    std::vector<InstalledEntry> entries;
    for (auto& url : AllAppsMenuBuilder::collectApps(FileURL("/Applications", true), 0)) {
        std::string name(url.lastPathComponent());
        auto title = keepsExtension ? name : std::string(url.nameWithoutExtension());
        entries.push_back({ std::move(url), std::move(title), std::move(name) });
    }
    for (auto& [url, localizedName] : platform().workspace->additionalApplications()) {
        auto title = keepsExtension ? std::string(url.lastPathComponent()) : localizedName;
        entries.push_back({ std::move(url), std::move(title), std::move(localizedName) });
    }
    return entries;
}

}

std::shared_ptr<MWMenu> AllAppsMenuBuilder::build()
{
    return makeGeneratedMenu("All Applications", [] { return nodesInOrder(applications()); });
}

std::vector<FileURL> AllAppsMenuBuilder::collectApps(FileURL const& in, int depth)
{
    if (depth > deepestFolder)
        return {};
    auto listing = platform().fileManager->contentsOfDirectory(in, ResourceKey::isDirectory, HiddenItems::skipped);
    if (!listing)
        return {};
    std::vector<FileURL> applications;
    for (auto& item : listing.value()) {
        if (item.url.pathExtension() == "app") {
            applications.push_back(std::move(item.url));
        } else if (item.values.isDirectory.value_or(false)) {
            auto below = collectApps(item.url, depth + 1);
            std::move(below.begin(), below.end(), std::back_inserter(applications));
        }
    }
    return applications;
}

}
