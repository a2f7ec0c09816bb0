#include "Freedesktop/Interface/XcbHandles.h"

#include <QGuiApplication>

#include <iterator>

namespace marrowick {

xcb_connection_t* xcbConnection()
{
    auto* native = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return native ? native->connection() : nullptr;
}

int xcbScreenNumber()
{
    char* host = nullptr;
    int display = 0;
    int screen = 0;
    if (!xcb_parse_display(nullptr, &host, &display, &screen))
        return 0;
    std::free(host);
    return screen;
}

xcb_window_t xcbRootWindow()
{
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(xcbConnection()));
    for (int skipped = 0; skipped < xcbScreenNumber() && screens.rem > 1; ++skipped)
        xcb_screen_next(&screens);
    return screens.data->root;
}

xcb_atom_t xcbAtom(std::string_view name)
{
    auto* connection = xcbConnection();
    auto const cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    XcbReply<xcb_intern_atom_reply_t> const reply(xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

std::set<std::uint32_t> xcbPressedKeys()
{
    auto* const connection = xcbConnection();
    if (!connection)
        return {};
    XcbReply<xcb_query_keymap_reply_t> const reply(
        xcb_query_keymap_reply(connection, xcb_query_keymap(connection), nullptr));
    std::set<std::uint32_t> pressed;
    for (std::uint32_t code = 0; reply && code < 8 * std::size(reply->keys); ++code) {
        if (reply->keys[code / 8] >> code % 8 & 1)
            pressed.insert(code);
    }
    return pressed;
}

void addXcbEventMask(xcb_window_t window, std::uint32_t mask)
{
    auto* connection = xcbConnection();
    XcbReply<xcb_get_window_attributes_reply_t> const attributes(
        xcb_get_window_attributes_reply(connection, xcb_get_window_attributes(connection, window), nullptr));
    if (!attributes)
        return;
    std::uint32_t const both = attributes->your_event_mask | mask;
    auto const cookie = xcb_change_window_attributes_checked(connection, window, XCB_CW_EVENT_MASK, &both);
    // The window may have been destroyed meanwhile, which is no failure.
    XcbReply<xcb_generic_error_t> const error(xcb_request_check(connection, cookie));
}

}
