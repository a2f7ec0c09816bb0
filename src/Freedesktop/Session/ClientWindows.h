#pragma once

#include "Freedesktop/Session/XConnection.h"

#include <sys/types.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace marrowick {

/// A top-level window that the window manager takes care of, as it describes itself.
struct ClientWindow {
    xcb_window_t id = XCB_WINDOW_NONE;
    /// The two halves of WM_CLASS; empty where there is none.
    std::string instanceName;
    std::string className;
    std::string gtkApplicationID;
    std::optional<pid_t> pid;
    /// False where `pid` counts on another machine.
    bool isLocal = true;
    bool skipsTaskbar = false;
    bool isMinimised = false;
};

struct ClientWindows {
    /// In the order in which the window manager came to know them, and last the active window where it is not listed.
    std::vector<ClientWindow> windows;
    xcb_window_t active = XCB_WINDOW_NONE;
};

/// What the window manager says at this moment; nothing where none runs. A window that vanishes meanwhile is left out.
/// Costs two round trips however many windows there are; `meanwhile` is done while the server answers.
ClientWindows readClientWindows(XConnection& connection, std::function<void()> const& meanwhile = {});

/// The active window alone; absent where there is none or it vanished.
std::optional<ClientWindow> readActiveWindow(XConnection& connection);

}
