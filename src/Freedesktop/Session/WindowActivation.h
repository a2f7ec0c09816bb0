#pragma once

#include "Freedesktop/Session/ClientWindows.h"
#include "Platform/RunningApplication.h"

#include <vector>

namespace marrowick {

/// What the window manager is told about one window.
struct WindowWish {
    enum class Kind : std::uint8_t {
        /// To lie above the others.
        raise,
        /// To be shown, to lie above the others and to get the keys.
        activate,
    };

    xcb_window_t window = XCB_WINDOW_NONE;
    Kind kind = Kind::activate;

    friend bool operator==(WindowWish const&, WindowWish const&) = default;
};

/// How the windows of one application come to the front; the wishes in their order, none for none. `stacking` names all
/// windows from the bottom up. A window that was minimised stays so while others of the application are shown.
std::vector<WindowWish> wishesToActivate(
    std::vector<ClientWindow> const& windows, std::vector<xcb_window_t> const& stacking, ActivationOptions options);

/// Brings `windows`, those of one application at this moment, to the front.
void activateWindows(std::vector<ClientWindow> const& windows, ActivationOptions options, XConnection& connection);

}
