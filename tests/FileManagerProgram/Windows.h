#pragma once

#include <xcb/xcb.h>

#include <string>

/// The program's windows: real ones, so that a window manager takes care of them.
class Windows {
public:
    Windows();
    ~Windows();
    Windows(Windows const&) = delete;
    Windows& operator=(Windows const&) = delete;

    /// Shows a window and returns its number; `type` is the end of the name of its type, such as NORMAL or DESKTOP.
    xcb_window_t open(std::string const& title, std::string const& type);
    void raise(xcb_window_t window);
    void minimise(xcb_window_t window);
    void moveToWorkspace(xcb_window_t window, std::uint32_t workspace);
    void close(xcb_window_t window);

private:
    xcb_atom_t atom(std::string const& name);
    /// Asks the window manager for something about a window.
    void request(xcb_window_t window, std::string const& message, std::uint32_t first, std::uint32_t second = 0);

    xcb_connection_t* connection_;
    xcb_window_t root_;
};
