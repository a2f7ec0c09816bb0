#pragma once

#include "Menus/MWMenu.h"
#include "Platform/FileURL.h"

#include <memory>
#include <vector>

namespace marrowick {

/// Makes the menu of all applications: those in the applications folder, and those that the desktop adds. Main thread
/// only.
class AllAppsMenuBuilder {
public:
    static std::shared_ptr<MWMenu> build();

    /// The applications in and below the folder `in`, in the order of the listings. What lies deeper than two folders below
    /// depth 0 is not looked at, nor what lies inside an application.
    static std::vector<FileURL> collectApps(FileURL const& in, int depth);
};

}
