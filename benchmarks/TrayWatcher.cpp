#include "TrayWatcher.h"

#include <poll.h>
#include <xcb/xcb.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <thread>

namespace marrowick::benchmarks {

namespace {

using Clock = std::chrono::steady_clock;

template<typename T>
using Reply = std::unique_ptr<T, decltype(&std::free)>;

template<typename T>
Reply<T> owned(T* reply)
{
    return { reply, std::free };
}

void select(xcb_connection_t* connection, xcb_window_t window, std::uint32_t events)
{
    xcb_change_window_attributes(connection, window, XCB_CW_EVENT_MASK, &events);
}

xcb_window_t trayWindow(xcb_connection_t* connection)
{
    constexpr std::string_view name = "_NET_SYSTEM_TRAY_S0";
    auto const atom
        = owned(xcb_intern_atom_reply(connection, xcb_intern_atom(connection, 0, name.size(), name.data()), nullptr));
    if (!atom)
        return XCB_NONE;
    auto const owner
        = owned(xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, atom->atom), nullptr));
    return owner ? owner->owner : XCB_NONE;
}

}

TrayWatcher::TrayWatcher()
    : connection_(xcb_connect(nullptr, nullptr), xcb_disconnect)
{
    if (xcb_connection_has_error(connection_.get())) {
        std::fprintf(stderr, "no display\n");
        std::exit(2);
    }
    auto const* setup = xcb_get_setup(connection_.get());
    clientMask_ = ~setup->resource_id_mask;
    root_ = xcb_setup_roots_iterator(setup).data->root;
    select(connection_.get(), root_, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    xcb_flush(connection_.get());
}

bool TrayWatcher::waitForTray(std::chrono::milliseconds patience)
{
    for (auto const end = Clock::now() + patience; Clock::now() < end;) {
        if (auto const window = trayWindow(connection_.get())) {
            trayClient_ = window & clientMask_;
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return false;
}

bool TrayWatcher::waitForIcon(std::chrono::milliseconds patience)
{
    for (auto const end = Clock::now() + patience;;) {
        if (takeEvents())
            return true;
        auto const left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now());
        if (left.count() <= 0)
            return false;
        pollfd wait { xcb_get_file_descriptor(connection_.get()), POLLIN, 0 };
        poll(&wait, 1, static_cast<int>(left.count()));
    }
}

/// Whether an icon shows after what has arrived.
bool TrayWatcher::takeEvents()
{
    while (auto const event = owned(xcb_poll_for_event(connection_.get()))) {
        std::uint32_t window = XCB_NONE;
        switch (event->response_type & 0x7F) {
        case XCB_CREATE_NOTIFY:
            watch(reinterpret_cast<xcb_create_notify_event_t const*>(event.get())->window);
            continue;
        case XCB_REPARENT_NOTIFY: {
            auto const* reparented = reinterpret_cast<xcb_reparent_notify_event_t const*>(event.get());
            window = reparented->window;
            if (auto const seen = windows_.find(window); seen != windows_.end())
                seen->second.isEmbedded = reparented->parent != root_;
            break;
        }
        case XCB_MAP_NOTIFY:
            window = reinterpret_cast<xcb_map_notify_event_t const*>(event.get())->window;
            if (auto const seen = windows_.find(window); seen != windows_.end())
                seen->second.isMapped = true;
            break;
        }
        if (auto const seen = windows_.find(window); seen != windows_.end()) {
            if (seen->second.isEmbedded && seen->second.isMapped)
                return true;
        }
    }
    return false;
}

/// Follows a window of a program; what it did before this is asked for.
void TrayWatcher::watch(std::uint32_t window)
{
    auto* connection = connection_.get();
    if ((window & clientMask_) == trayClient_)
        return;
    select(connection, window, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    auto const tree = owned(xcb_query_tree_reply(connection, xcb_query_tree(connection, window), nullptr));
    auto const attributes
        = owned(xcb_get_window_attributes_reply(connection, xcb_get_window_attributes(connection, window), nullptr));
    if (!tree || !attributes)
        return;
    windows_[window] = { tree->parent != root_, attributes->map_state != XCB_MAP_STATE_UNMAPPED };
}

}
