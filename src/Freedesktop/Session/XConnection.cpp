#include "Freedesktop/Session/XConnection.h"

#include <QMetaObject>
#include <QSocketNotifier>

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>

namespace marrowick {

namespace {

constexpr std::array<std::string_view, static_cast<std::size_t>(XAtom::count)> atomNames {
    "_NET_ACTIVE_WINDOW",
    "_NET_CLIENT_LIST",
    "_NET_CLOSE_WINDOW",
    "_NET_CLIENT_LIST_STACKING",
    "_NET_CURRENT_DESKTOP",
    "_NET_RESTACK_WINDOW",
    "_NET_SUPPORTED",
    "_NET_SUPPORTING_WM_CHECK",
    "_NET_WM_DESKTOP",
    "_NET_WM_ICON",
    "_NET_WM_NAME",
    "_NET_WM_PID",
    "_NET_WM_STATE",
    "_NET_WM_STATE_HIDDEN",
    "_NET_WM_STATE_SKIP_TASKBAR",
    "_NET_WM_WINDOW_TYPE",
    "_NET_WM_WINDOW_TYPE_DESKTOP",
    "_NET_WM_WINDOW_TYPE_DIALOG",
    "_NET_WM_WINDOW_TYPE_DOCK",
    "_NET_WM_WINDOW_TYPE_MENU",
    "_NET_WM_WINDOW_TYPE_NORMAL",
    "_NET_WM_WINDOW_TYPE_NOTIFICATION",
    "_NET_WM_WINDOW_TYPE_SPLASH",
    "_NET_WM_WINDOW_TYPE_TOOLBAR",
    "_NET_WM_WINDOW_TYPE_UTILITY",
    "_GTK_APPLICATION_ID",
    "_GTK_UNIQUE_BUS_NAME",
    "_GTK_WINDOW_OBJECT_PATH",
    "UTF8_STRING",
    "WM_STATE",
};

template<typename T>
std::unique_ptr<T, decltype(&std::free)> owned(T* reply)
{
    return { reply, &std::free };
}

}

XConnection::XConnection()
{
    int screenNumber = 0;
    connection_.reset(xcb_connect(nullptr, &screenNumber));
    if (!isUsable())
        return;
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection_.get()));
    for (; screenNumber > 0 && screens.rem > 1; --screenNumber)
        xcb_screen_next(&screens);
    root_ = screens.data->root;
    internAtoms();

    clockWindow_ = xcb_generate_id(connection_.get());
    std::uint32_t const eventMask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(connection_.get(), 0, clockWindow_, root_, -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
        XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &eventMask);
}

XConnection::~XConnection() = default;

void XConnection::internAtoms()
{
    std::array<xcb_intern_atom_cookie_t, atomNames.size()> cookies {};
    for (std::size_t i = 0; i < atomNames.size(); ++i) {
        auto const length = static_cast<std::uint16_t>(atomNames[i].size());
        cookies[i] = xcb_intern_atom(connection_.get(), 0, length, atomNames[i].data());
    }
    for (std::size_t i = 0; i < atomNames.size(); ++i) {
        if (auto const reply = owned(xcb_intern_atom_reply(connection_.get(), cookies[i], nullptr)))
            atoms_[i] = reply->atom;
    }
}

bool XConnection::isUsable() const
{
    return xcb_connection_has_error(connection_.get()) == 0;
}

XConnection::Request XConnection::request(
    xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::uint32_t maximumBytes)
{
    return { xcb_get_property(connection_.get(), 0, window, property, type, 0, maximumBytes / 4).sequence };
}

void XConnection::sendRequests()
{
    xcb_flush(connection_.get());
}

XConnection::PropertyReply XConnection::collect(Request request)
{
    xcb_generic_error_t* error = nullptr;
    PropertyReply reply(xcb_get_property_reply(connection_.get(), { request.sequence }, &error));
    std::free(error);
    return reply;
}

std::optional<std::string> XConnection::collectText(Request request)
{
    auto const reply = collect(request);
    if (!reply)
        return std::nullopt;
    bool const isText = reply->type == XCB_ATOM_STRING || reply->type == atom(XAtom::utf8String);
    if (!isText || reply->format != 8)
        return std::string();
    return std::string(static_cast<char const*>(xcb_get_property_value(reply.get())),
        static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
}

std::vector<std::uint32_t> XConnection::collectNumbers(Request request)
{
    auto const reply = collect(request);
    if (!reply || reply->format != 32)
        return {};
    std::vector<std::uint32_t> numbers(reply->value_len);
    if (!numbers.empty())
        std::memcpy(numbers.data(), xcb_get_property_value(reply.get()), numbers.size() * sizeof(std::uint32_t));
    return numbers;
}

xcb_timestamp_t XConnection::serverTime()
{
    time_ = XCB_CURRENT_TIME;
    if (!isUsable())
        return time_;
    // The answer to the check comes after the event that the change causes.
    auto const change = xcb_change_property_checked(
        connection_.get(), XCB_PROP_MODE_APPEND, clockWindow_, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 0, nullptr);
    std::free(xcb_request_check(connection_.get(), change));
    readEvents();
    noticeQueuedEvents();
    return time_;
}

void XConnection::sendToManager(xcb_window_t window, XAtom message, std::array<std::uint32_t, 5> const& data)
{
    if (!isUsable())
        return;
    xcb_client_message_event_t event {};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = atom(message);
    std::copy(data.begin(), data.end(), event.data.data32);
    std::array<char, sizeof event> bytes {};
    std::memcpy(bytes.data(), &event, sizeof event);
    xcb_send_event(connection_.get(), 0, root_,
        XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT, bytes.data());
    xcb_flush(connection_.get());
}

void XConnection::killClient(xcb_window_t window)
{
    // Zero would stand for all programs that have left something behind.
    if (!isUsable() || window == XCB_WINDOW_NONE)
        return;
    xcb_kill_client(connection_.get(), window);
    xcb_flush(connection_.get());
}

void XConnection::watchRootProperty(XAtom property, std::function<void()> handler)
{
    if (!isUsable())
        return;
    handler_ = std::move(handler);
    watchedProperty_ = atom(property);
    watchedPropertyChanged_ = false;
    std::uint32_t const eventMask = handler_ ? XCB_EVENT_MASK_PROPERTY_CHANGE : XCB_EVENT_MASK_NO_EVENT;
    xcb_change_window_attributes(connection_.get(), root_, XCB_CW_EVENT_MASK, &eventMask);
    xcb_flush(connection_.get());
    if (handler_ && !notifier_) {
        notifier_
            = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(connection_.get()), QSocketNotifier::Read);
        QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { deliver(); });
    }
}

void XConnection::noticeQueuedEvents()
{
    if (!notifier_)
        return;
    while (auto const event = owned(xcb_poll_for_queued_event(connection_.get())))
        handleEvent(*event);
    if (watchedPropertyChanged_)
        QMetaObject::invokeMethod(
            notifier_.get(), [this] { deliver(); }, Qt::QueuedConnection);
}

void XConnection::deliver()
{
    readEvents();
    if (!isUsable() && notifier_) {
        // A closed connection stays readable for ever.
        notifier_->setEnabled(false);
        return;
    }
    if (std::exchange(watchedPropertyChanged_, false) && handler_) {
        auto const handler = handler_;
        handler();
    }
}

void XConnection::readEvents()
{
    while (auto const event = owned(xcb_poll_for_event(connection_.get())))
        handleEvent(*event);
}

void XConnection::handleEvent(xcb_generic_event_t const& event)
{
    if ((event.response_type & 0x7F) != XCB_PROPERTY_NOTIFY)
        return;
    xcb_property_notify_event_t notice;
    std::memcpy(&notice, &event, sizeof notice);
    if (notice.window == clockWindow_)
        time_ = notice.time;
    else if (notice.window == root_ && notice.atom == watchedProperty_)
        watchedPropertyChanged_ = true;
}

}
