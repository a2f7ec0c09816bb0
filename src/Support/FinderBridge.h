#pragma once

#include "Platform/FileURL.h"
#include "Platform/ScriptingBridge.h"

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
};

}
