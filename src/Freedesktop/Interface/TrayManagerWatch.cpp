#include "Freedesktop/Interface/TrayManagerWatch.h"

#include "Freedesktop/Interface/XcbHandles.h"

#include <QCoreApplication>

#include <string>
#include <utility>

namespace marrowick {

namespace {

constexpr std::uint8_t sentEventBit = 0x80;

xcb_window_t selectionOwner(xcb_atom_t selection)
{
    auto* connection = xcbConnection();
    XcbReply<xcb_get_selection_owner_reply_t> const owner(
        xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, selection), nullptr));
    return owner ? owner->owner : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
}

}

TrayManagerWatch::TrayManagerWatch(std::function<void()> changed)
    : changed_(std::move(changed))
{
    if (!xcbConnection())
        return;
    managerAtom_ = xcbAtom("MANAGER");
    selection_ = xcbAtom("_NET_SYSTEM_TRAY_S" + std::to_string(xcbScreenNumber()));
    // A manager announces itself by a message to those who hear of the root window's structure.
    addXcbEventMask(xcbRootWindow(), XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    QCoreApplication::instance()->installNativeEventFilter(this);
    findManager();
}

TrayManagerWatch::~TrayManagerWatch()
{
    if (auto* application = QCoreApplication::instance())
        application->removeNativeEventFilter(this);
}

void TrayManagerWatch::findManager()
{
    auto owner = selectionOwner(selection_);
    while (owner != XCB_WINDOW_NONE) {
        addXcbEventMask(owner, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
        // An owner that was destroyed before its events were asked for never reports its end.
        if (auto const again = selectionOwner(selection_); again != owner)
            owner = again;
        else
            break;
    }
    manager_ = owner;
}

bool TrayManagerWatch::nativeEventFilter(QByteArray const& eventType, void* message, qintptr*)
{
    if (eventType != "xcb_generic_event_t")
        return false;
    auto const* event = static_cast<xcb_generic_event_t const*>(message);
    bool isAboutManagers = false;
    switch (event->response_type & ~sentEventBit) {
    case XCB_CLIENT_MESSAGE: {
        auto const* sent = reinterpret_cast<xcb_client_message_event_t const*>(event);
        isAboutManagers = sent->type == managerAtom_ && sent->data.data32[1] == selection_;
        break;
    }
    case XCB_DESTROY_NOTIFY:
        isAboutManagers = manager_ != XCB_WINDOW_NONE
            && reinterpret_cast<xcb_destroy_notify_event_t const*>(event)->window == manager_;
        break;
    }
    if (isAboutManagers) {
        auto const before = manager_;
        findManager();
        if (manager_ != before)
            changed_();
    }
    return false;
}

}
