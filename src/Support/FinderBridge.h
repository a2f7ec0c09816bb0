#pragma once

#include "Platform/FileURL.h"
#include "Platform/Result.h"
#include "Platform/ScriptingBridge.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

namespace marrowick {

/// The program's side of the file manager. Main thread only; nothing is kept between calls.
class FinderBridge {
public:
    /// Runs a script and waits for its result. Absent when the text is no script, or when running it failed, which the
    /// system log then tells.
    static std::optional<EventDescriptor> runAppleScript(std::string_view source);

    /// The files selected in the file manager, in its order. What is no file with a location on this machine is left
    /// out.
    static std::vector<FileURL> selectedItems();

    /// The folder in the file manager's front window.
    static std::optional<FileURL> frontWindowFolder();

    /// The file that a script's result refers to, or whose path it is.
    static std::optional<FileURL> fileURLValue(EventDescriptor const& descriptor);

    /// The roots of the mounted volumes, hidden ones left out, by name.
    static std::vector<FileURL> mountedVolumes();

    /// The settings panes installed for the system and for the user, by name; of two with one name the system's comes first.
    static std::vector<FileURL> installedPreferencePanes();

    /// Opens the file manager's information window on an item.
    static void openInformationWindow(FileURL const& url);

    /// Moves an item to the trash. `completion` comes later, on any thread, with whether it is there.
    static void moveToTrash(FileURL const& url, std::function<void(bool)> completion = {});

    /// Each puts an item into a folder under the first free name for it: its own, with " alias" added for an alias, then
    /// with " 2", " 3" and so on before the extension. A name that another program takes in between is not free. The
    /// error is the file system's.
    static Result<void> moveItem(FileURL const& item, FileURL const& folder);
    static Result<void> copyItem(FileURL const& item, FileURL const& folder);
    static Result<void> aliasItem(FileURL const& item, FileURL const& folder);

private:
    /// The first place for `item` in `folder` at which nothing stands, not even a dangling link, from the name of `number`
    /// on; `number` becomes that of the name found. 1 is the name without a number, with `suffix` added.
    static FileURL uniqueDestination(
        FileURL const& item, FileURL const& folder, std::string_view suffix, std::uint64_t& number);

    /// Calls `transferTo` with one free place after the other until none is taken from under it.
    template<typename TransferTo>
    static Result<void> withUniqueDestination(
        FileURL const& item, FileURL const& folder, std::string_view suffix, TransferTo transferTo);
};

}
