#pragma once

#include "Freedesktop/DeliveryGate.h"
#include "Freedesktop/Interface/HostMenu.h"
#include "Freedesktop/Interface/StatusAreaWatch.h"
#include "Freedesktop/Interface/TrayIconWindow.h"
#include "Platform/Log.h"
#include "Platform/StatusItem.h"

#include <QSystemTrayIcon>

#include <functional>
#include <memory>
#include <optional>

namespace marrowick {

class FreedesktopEvents;

/// An icon in whichever status area the desktop has, moved when another one takes its place.
///
/// A StatusNotifier icon is Qt's. An embedded one is a window of the program, because Qt settles on one of the two kinds
/// once for the whole process.
class FreedesktopStatusItem : public StatusItem {
public:
    /// While `gate` is closed clicks do nothing but show why.
    FreedesktopStatusItem(FreedesktopEvents& events, std::shared_ptr<DeliveryGate> gate, Log& log);
    ~FreedesktopStatusItem() override;

    StatusItemButton* button() override { return &button_; }
    void setHostMenu(std::function<std::shared_ptr<Menu>()> makeMenu) override;

    /// Where the icon is on the virtual desktop. Absent where the status area does not tell (StatusNotifier), without a
    /// status area, and until the icon has got its place.
    std::optional<QRect> iconGeometry() const;

private:
    class Button : public StatusItemButton {
    public:
        explicit Button(FreedesktopStatusItem& item)
            : item_(item)
        {
        }
        void setImage(Image const& image) override;
        void setAction(std::function<void()> action) override;
        void sendActionOn(std::uint64_t eventMask) override { eventMask_ = eventMask; }

        std::optional<Image> const& image() const { return image_; }
        bool sendsActionOn(EventType type) const;
        void sendAction() const;

    private:
        FreedesktopStatusItem& item_;
        std::optional<Image> image_;
        std::function<void()> action_;
        std::uint64_t eventMask_ = 0;
    };

    void show(StatusArea area);
    void showInNotifierHost();
    void showEmbedded(xcb_window_t manager);
    void updateImage();
    void pressed(Qt::MouseButton mouseButton, Qt::KeyboardModifiers modifiers);
    void activated(QSystemTrayIcon::ActivationReason reason);
    void clicked(Event event);

    FreedesktopEvents& events_;
    std::shared_ptr<DeliveryGate> gate_;
    Log& log_;
    Button button_;
    std::unique_ptr<HostMenu> hostMenu_;
    std::unique_ptr<QSystemTrayIcon> notifierIcon_;
    std::unique_ptr<TrayIconWindow> embeddedIcon_;
    bool hasToldOfMissingArea_ = false;
    StatusAreaWatch areas_;
};

}
