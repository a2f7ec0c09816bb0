#pragma once

#include "Freedesktop/Session/DesktopEntries.h"
#include "Platform/Workspace.h"

#include <string_view>
#include <vector>

namespace marrowick {

/// Whether the categories of a desktop entry, separated by semicolons, make it one of the desktop's settings.
bool areSettingsCategories(std::string_view categories);

/// The applications and settings that this desktop shows to its user. What was read is kept until a desktop entry or a
/// folder of programs changes.
class InstalledApplications {
public:
    /// `entries` is refreshed by every question.
    explicit InstalledApplications(DesktopEntries& entries)
        : entries_(entries)
    {
    }

    std::vector<InstalledItem> applications();
    std::vector<InstalledItem> settings();

private:
    void refresh();

    DesktopEntries& entries_;
    unsigned int generation_ = 0;
    std::vector<InstalledItem> applications_;
    std::vector<InstalledItem> settings_;
};

}
