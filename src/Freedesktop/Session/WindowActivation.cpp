#include "Freedesktop/Session/WindowActivation.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <tuple>

namespace marrowick {

namespace {

constexpr std::uint32_t maximumListBytes = 4096 * 4;
constexpr std::uint32_t maximumSupportedBytes = 1024 * 4;
/// Says to the window manager that the wish is the user's own.
constexpr std::uint32_t fromPager = 2;

/// A window with its height above the others.
struct StackedWindow {
    ClientWindow window;
    std::ptrdiff_t height = -1;
};

std::vector<StackedWindow> stacked(std::vector<ClientWindow> const& windows, std::vector<xcb_window_t> const& stacking)
{
    std::vector<StackedWindow> result;
    for (auto const& window : windows) {
        auto const found = std::find(stacking.begin(), stacking.end(), window.id);
        result.push_back({ window, found == stacking.end() ? -1 : std::distance(stacking.begin(), found) });
    }
    std::stable_sort(result.begin(), result.end(),
        [](StackedWindow const& a, StackedWindow const& b) { return a.height < b.height; });
    return result;
}

/// The window that the user works in: a shown one rather than a minimised one, and a desktop or a panel only where there
/// is nothing else.
StackedWindow const& frontmost(std::vector<StackedWindow> const& windows)
{
    auto const rank = [](StackedWindow const& stackedWindow) {
        auto const& window = stackedWindow.window;
        return std::tuple(!window.skipsTaskbar, !window.isMinimised, stackedWindow.height);
    };
    return *std::max_element(windows.begin(), windows.end(),
        [&](StackedWindow const& a, StackedWindow const& b) { return rank(a) < rank(b); });
}

}

std::vector<WindowWish> wishesToActivate(
    std::vector<ClientWindow> const& windows, std::vector<xcb_window_t> const& stacking, ActivationOptions options)
{
    if (windows.empty())
        return {};
    auto const ordered = stacked(windows, stacking);
    auto const& front = frontmost(ordered);
    bool const areAllMinimised = front.window.isMinimised;
    std::vector<WindowWish> wishes;
    if (options == ActivationOptions::allWindows) {
        for (auto const& [window, height] : ordered) {
            if (window.id == front.window.id || window.skipsTaskbar)
                continue;
            if (!window.isMinimised)
                wishes.push_back({ window.id, WindowWish::Kind::raise });
            else if (areAllMinimised)
                wishes.push_back({ window.id, WindowWish::Kind::activate });
        }
    }
    wishes.push_back({ front.window.id, WindowWish::Kind::activate });
    return wishes;
}

void activateWindows(std::vector<ClientWindow> const& windows, ActivationOptions options, XConnection& connection)
{
    auto const ask = [&](XAtom property, xcb_atom_t type, std::uint32_t maximumBytes) {
        return connection.request(connection.root(), connection.atom(property), type, maximumBytes);
    };
    auto const stackingRequest = ask(XAtom::netClientListStacking, XCB_ATOM_WINDOW, maximumListBytes);
    auto const supportedRequest = ask(XAtom::netSupported, XCB_ATOM_ATOM, maximumSupportedBytes);
    auto const stacking = connection.collectNumbers(stackingRequest);
    auto const supported = connection.collectNumbers(supportedRequest);
    bool const canRaise
        = std::find(supported.begin(), supported.end(), connection.atom(XAtom::netRestackWindow)) != supported.end();

    auto const time = connection.serverTime();
    for (auto const& [window, kind] : wishesToActivate(windows, stacking, options)) {
        // A window manager that cannot raise alone gives the keys to one window after the other.
        if (kind == WindowWish::Kind::raise && canRaise)
            connection.sendToManager(
                window, XAtom::netRestackWindow, { fromPager, XCB_WINDOW_NONE, XCB_STACK_MODE_ABOVE });
        else
            connection.sendToManager(window, XAtom::netActiveWindow, { fromPager, time });
    }
}

}
