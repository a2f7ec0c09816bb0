#include "Freedesktop/Session/InstalledApplications.h"

#include "Freedesktop/GLibOwners.h"

#include <gio/gdesktopappinfo.h>

#include <algorithm>
#include <array>

namespace marrowick {

namespace {

using namespace std::string_view_literals;

/// The desktops' common ones, and what the desktops mark their panes with.
constexpr std::array settingsCategories { "Settings"sv, "DesktopSettings"sv, "HardwareSettings"sv,
    "X-GNOME-SystemSettings"sv, "X-GNOME-NetworkSettings"sv, "X-GNOME-PersonalSettings"sv, "X-GNOME-Settings-Panel"sv,
    "X-XFCE-SettingsDialog"sv, "X-XFCE-PersonalSettings"sv, "X-XFCE-HardwareSettings"sv, "X-XFCE-SystemSettings"sv,
    "X-MATE-NetworkSettings"sv, "X-MATE-PersonalSettings"sv, "X-LXQt-SystemSettings"sv, "LXQtSettings"sv };

/// Each of the modules of that desktop has a category of its own below this.
constexpr auto moduleCategory = "X-KDE-settings-"sv;

}

bool areSettingsCategories(std::string_view categories)
{
    while (!categories.empty()) {
        auto const category = categories.substr(0, categories.find(';'));
        if (category.starts_with(moduleCategory)
            || std::find(settingsCategories.begin(), settingsCategories.end(), category) != settingsCategories.end())
            return true;
        categories.remove_prefix(std::min(categories.size(), category.size() + 1));
    }
    return false;
}

std::vector<InstalledItem> InstalledApplications::applications()
{
    refresh();
    return applications_;
}

std::vector<InstalledItem> InstalledApplications::settings()
{
    refresh();
    return settings_;
}

void InstalledApplications::refresh()
{
    entries_.refresh();
    if (generation_ == entries_.generation())
        return;
    generation_ = entries_.generation();
    applications_.clear();
    settings_.clear();
    for (auto const& entry : entries_.all()) {
        if (entry.path.empty() || !entry.isVisible)
            continue;
        GObjectOwner<GDesktopAppInfo> const info(g_desktop_app_info_new_from_filename(entry.path.c_str()));
        if (!info || !g_app_info_should_show(G_APP_INFO(info.get())))
            continue;
        char const* const name = g_app_info_get_name(G_APP_INFO(info.get()));
        InstalledItem const item { FileURL(entry.path), name ? name : entry.id };
        if (areSettingsCategories(entry.categories))
            settings_.push_back(item);
        applications_.push_back(item);
    }
}

}
