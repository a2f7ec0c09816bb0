#pragma once

#include "Platform/DefaultsStore.h"
#include "Platform/FileURL.h"
#include "Support/SortMode.h"

#include <optional>
#include <string>
#include <string_view>

namespace marrowick {

/// The user's settings. Every call reads the store, so a change made anywhere shows at the next call; a value of a type
/// that a setting does not have counts as absent. Main thread only.
class Preferences {
public:
    static Preferences& shared();

    Preferences();

    bool inlineItemsIntoMainMenu() const;
    bool addDesktopSubmenu() const;
    bool addProcessesSubmenu() const;
    bool addPrefPanesSubmenu() const;
    bool addRecentItemsSubmenu() const;
    bool useFinderLabelColors() const;
    bool runScriptFiles() const;
    /// Hides ".app" in titles.
    bool tossDotAppExtension() const;
    /// Hides ".scpt" in titles.
    bool tossDotScptExtension() const;
    /// Leaves an empty menu empty.
    bool ignoreEmptyItemsFolder() const;
    bool sortProcessMenu() const;
    bool addMarrowickToProcessMenu() const;
    /// Closes the menu before the action of a key.
    bool immedActionOnKeyPress() const;

    SortMode sortMode() const;

    /// The folder that the menu shows: the stored path as it stands, unchecked, or the default.
    FileURL itemsFolderURL() const;

    /// "Marrowick Items" in the program's folder of the user's application support. Stops the process where the user
    /// has no application support folder.
    static FileURL const& defaultItemsFolderURL();

    /// Makes the items folder, and the folders above it, when nothing stands at its path. A failure stays silent.
    void ensureItemsFolderExists() const;

private:
    bool boolean(std::string_view key, bool whenAbsent) const;
    std::optional<std::string> string(std::string_view key) const;

    DefaultsStore& defaults_;
    mutable std::optional<FileURL> defaultItemsFolder_;
};

}
