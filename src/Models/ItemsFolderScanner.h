#pragma once

#include "Models/MenuContext.h"
#include "Models/MenuNode.h"
#include "Platform/FileManager.h"
#include "Platform/FileURL.h"

#include <optional>
#include <string>
#include <vector>

namespace marrowick {

/// Reads one level of an items folder into the entries of a menu. Nothing is kept between calls; main thread only.
class ItemsFolderScanner {
public:
    /// A node on its way through one scan.
    struct Entry {
        MenuNode node;
        /// The two characters before the ")" of a name like "01)Mail".
        std::optional<std::string> sortPrefix;
        /// The item's modification date where the listing read it along; `sort` reads what it misses.
        std::optional<FileTime> contentModificationDate;
    };

    /// The entries of the folder that `context` shows, in their order. Empty for a folder that cannot be read.
    /// `isTopLevel` makes no difference.
    static std::vector<MenuNode> children(FileURL const& of, MenuContext const& context, bool isTopLevel);

    /// Puts the entries that the folder's order file lists first, in its order. A file that cannot be read, or that is
    /// not a property list of an array of strings, changes nothing; one that lists a name twice stops the process.
    static void applyExplicitOrder(std::vector<Entry>& entries, FileURL const& folder);

    /// Sorts by the user's sort mode, unless the folder has an order file.
    static void sort(std::vector<Entry>& entries, FileURL const& folder);

    /// 0 for applications; 1 for folders, dividers and generated submenus; 2 for other files and for template folders.
    static int kindRank(MenuNode const& node);
};

}
