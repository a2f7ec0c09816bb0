#pragma once

#include <xcb/xcb.h>

#include <QAbstractNativeEventFilter>

#include <functional>

namespace marrowick {

/// Knows the window that embeds status icons on X11 (the owner of the `_NET_SYSTEM_TRAY_S` selection).
class TrayManagerWatch : public QAbstractNativeEventFilter {
public:
    /// `changed` is called when another window embeds icons, or none does.
    explicit TrayManagerWatch(std::function<void()> changed);
    ~TrayManagerWatch() override;
    TrayManagerWatch(TrayManagerWatch const&) = delete;
    TrayManagerWatch& operator=(TrayManagerWatch const&) = delete;

    /// `XCB_WINDOW_NONE` where no window embeds icons.
    xcb_window_t manager() const { return manager_; }

    bool nativeEventFilter(QByteArray const& eventType, void* message, qintptr* result) override;

private:
    void findManager();

    std::function<void()> changed_;
    xcb_atom_t managerAtom_ = XCB_ATOM_NONE;
    xcb_atom_t selection_ = XCB_ATOM_NONE;
    xcb_window_t manager_ = XCB_WINDOW_NONE;
};

}
