#pragma once

#include "Freedesktop/Session/FileManagerStates.h"
#include "Freedesktop/Session/XConnection.h"

#include <cstdint>
#include <vector>

namespace marrowick {

/// What the window manager says about a window. Of several that hold, the first counts.
enum class WindowVisibility : std::uint8_t {
    minimised,
    /// The one with the icons, below all others.
    desktop,
    onOtherWorkspace,
    visible,
};

struct StackedWindow {
    xcb_window_t id = XCB_WINDOW_NONE;
    WindowVisibility visibility = WindowVisibility::visible;
};

/// Those of `windows` that the window manager knows, from the lowest to the topmost.
std::vector<StackedWindow> readStacking(XConnection& connection, FileManagerWindows const& windows);

/// The window that the user takes for the front one; null only where there is none at all.
FileManagerWindow const* frontWindow(FileManagerWindows const& windows, std::vector<StackedWindow> const& stacking);

}
