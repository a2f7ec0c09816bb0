#pragma once

#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class QSocketNotifier;

namespace marrowick {

/// The atoms that questions about windows need.
enum class XAtom : std::uint8_t {
    netActiveWindow,
    netClientList,
    netCloseWindow,
    netClientListStacking,
    netCurrentDesktop,
    netRestackWindow,
    netSupported,
    netSupportingWMCheck,
    netWMDesktop,
    netWMIcon,
    netWMName,
    netWMPID,
    netWMState,
    netWMStateHidden,
    netWMStateSkipTaskbar,
    netWMWindowType,
    netWMWindowTypeDesktop,
    netWMWindowTypeDialog,
    netWMWindowTypeDock,
    netWMWindowTypeMenu,
    netWMWindowTypeNormal,
    netWMWindowTypeNotification,
    netWMWindowTypeSplash,
    netWMWindowTypeToolbar,
    netWMWindowTypeUtility,
    gtkApplicationID,
    gtkUniqueBusName,
    gtkWindowObjectPath,
    utf8String,
    wmState,
    count,
};

/// A connection to the X server of its own, apart from the toolkit's: errors about windows that vanished stay here,
/// and the events asked for do not touch those that the toolkit asks for. Without a server, and after the server went
/// away, every answer is empty. Main thread only.
class XConnection {
public:
    XConnection();
    ~XConnection();
    XConnection(XConnection const&) = delete;
    XConnection& operator=(XConnection const&) = delete;

    bool isUsable() const;
    xcb_window_t root() const { return root_; }
    xcb_atom_t atom(XAtom atom) const { return atoms_[static_cast<std::size_t>(atom)]; }

    /// A property that was asked for. Every one must be collected, once.
    struct Request {
        unsigned int sequence = 0;
    };
    Request request(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::uint32_t maximumBytes);
    /// Sends what was asked for. Collecting does that too.
    void sendRequests();

    /// The bytes of a text property, empty where it is missing or is no text; absent where the window is missing.
    std::optional<std::string> collectText(Request request);
    /// The numbers of a property of 32-bit values; empty where there are none.
    std::vector<std::uint32_t> collectNumbers(Request request);

    /// The server's clock at this moment; the "current time" of the protocol without a server.
    xcb_timestamp_t serverTime();

    /// Sends the window manager a message about `window`.
    void sendToManager(xcb_window_t window, XAtom message, std::array<std::uint32_t, 5> const& data);
    /// Ends the connection of the program whose window it is.
    void killClient(xcb_window_t window);

    /// `handler` runs from the event loop after properties of the root window changed; null ends it.
    void watchRootProperty(XAtom property, std::function<void()> handler);

    /// Answers that were waited for may have brought events along, of which the event loop does not know.
    void noticeQueuedEvents();

private:
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };
    struct FreeReply {
        void operator()(xcb_get_property_reply_t* reply) const { std::free(reply); }
    };
    using PropertyReply = std::unique_ptr<xcb_get_property_reply_t, FreeReply>;

    void internAtoms();
    PropertyReply collect(Request request);
    void readEvents();
    void handleEvent(xcb_generic_event_t const& event);
    void deliver();

    std::unique_ptr<xcb_connection_t, Disconnect> connection_;
    xcb_window_t root_ = XCB_WINDOW_NONE;
    std::array<xcb_atom_t, static_cast<std::size_t>(XAtom::count)> atoms_ {};
    /// Never mapped; a change of its properties makes the server tell the time.
    xcb_window_t clockWindow_ = XCB_WINDOW_NONE;
    xcb_timestamp_t time_ = XCB_CURRENT_TIME;
    xcb_atom_t watchedProperty_ = XCB_ATOM_NONE;
    bool watchedPropertyChanged_ = false;
    std::function<void()> handler_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

}
