#pragma once

#include "Platform/FileURL.h"

#include <optional>
#include <string>
#include <vector>

namespace marrowick {

/// The user's situation at the moment a menu is filled or an entry is chosen.
struct MenuContext {
    /// The identifier of the last other application that was in front; absent when none is known or it has none.
    std::optional<std::string> frontmostBundleID;
    /// What is selected in the file manager, in its order; empty also when it cannot be asked.
    std::vector<FileURL> finderSelection;
    /// Whether text is selected in the application in front. Never true in a captured context.
    bool hasTextSelection = false;
    /// The folder in the file manager's front window; absent when there is none or it cannot be asked.
    std::optional<FileURL> copyDestinationFolder;

    /// Asks for everything anew, the file manager's selection first, and waits for the answers. Main thread only.
    static MenuContext capture();
};

}
