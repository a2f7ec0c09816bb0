#pragma once

#include "Freedesktop/Session/FileManagerStates.h"
#include "Freedesktop/Session/XConnection.h"

#include <string>
#include <vector>

namespace marrowick {

/// Appends what the property `OpenWindowsWithLocations` of the desktop's file manager interface says. An answer of another
/// type says nothing.
void appendExportedWindows(FileManagerWindows& windows, GVariant* answer, std::string const& connection);

/// An X window that says where its program has it on the bus.
struct NamedWindow {
    xcb_window_t id = XCB_WINDOW_NONE;
    std::string connection;
    std::string objectPath;
    std::string title;
};

/// The windows of the window manager's list that say so.
std::vector<NamedWindow> readNamedWindows(XConnection& connection);

/// Gives the exported ones of `windows` their X windows, and as their folder the one of the tab in front, which has given
/// the window its title; no folder where the tabs cannot be told apart. Of several that X does not know nobody can say
/// which is in front, so these are removed.
void identifyExportedWindows(FileManagerWindows& windows, std::vector<NamedWindow> const& named);

}
