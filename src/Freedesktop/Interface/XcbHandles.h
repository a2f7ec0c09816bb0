#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <set>
#include <string_view>

namespace marrowick {

struct FreeXcbReply {
    void operator()(void* reply) const { std::free(reply); }
};

/// What the X server answered; null where it answered with an error.
template<typename Reply>
using XcbReply = std::unique_ptr<Reply, FreeXcbReply>;

/// The connection of the running `QGuiApplication`; null on other window systems than X11.
xcb_connection_t* xcbConnection();

/// The number of the X screen that the program is shown on, and its root window.
int xcbScreenNumber();
xcb_window_t xcbRootWindow();

xcb_atom_t xcbAtom(std::string_view name);

/// The X key codes of the keys that are down.
std::set<std::uint32_t> xcbPressedKeys();

/// Adds to the events that the program hears of `window`, which may be another program's.
void addXcbEventMask(xcb_window_t window, std::uint32_t mask);

}
