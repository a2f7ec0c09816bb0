#pragma once

#include "Menus/MWMenu.h"
#include "Platform/FileURL.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace marrowick {

/// Makes the menu of the files that were modified last. Main thread only.
class RecentItemsMenuBuilder {
public:
    static std::shared_ptr<MWMenu> build();

    /// At most `limit` files that lie directly in the user's Desktop, Documents and Downloads folders, the last modified
    /// first; files without a date last.
    static std::vector<FileURL> recentFiles(std::size_t limit);
};

}
