#pragma once

#include "Freedesktop/DeliveryGate.h"
#include "Freedesktop/Interface/FreedesktopEvents.h"
#include "Freedesktop/Interface/MenuStyle.h"
#include "Platform/Menu.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPoint>

#include <functional>
#include <memory>
#include <vector>

namespace marrowick {

class MenuView;

/// The one menu that is open, with its submenus: from its opening to the end of the action that was chosen, and to the
/// deletion of its views, which may have to wait.
class MenuTracking {
public:
    /// While `gate` is closed neither a chosen action runs nor is a view deleted: an alert may have come up in the
    /// middle of anything that a view does.
    MenuTracking(FreedesktopEvents& events, std::shared_ptr<DeliveryGate> gate);
    ~MenuTracking();
    MenuTracking(MenuTracking const&) = delete;
    MenuTracking& operator=(MenuTracking const&) = delete;

    /// Stands for a view that is handling an event. While there is one no view is deleted, because a handler can run an
    /// event loop of its own.
    class HandlerScope {
    public:
        explicit HandlerScope(MenuTracking& tracking);
        ~HandlerScope();
        HandlerScope(HandlerScope const&) = delete;
        HandlerScope& operator=(HandlerScope const&) = delete;

    private:
        MenuTracking& tracking_;
    };

    FreedesktopEvents& events() { return events_; }

    /// The style of views that are made from here on.
    QStyle& style();

    /// Makes the view of `menu`, still empty, in the place of the one that is open, which closes first.
    MenuView& begin(std::shared_ptr<Menu> const& menu);

    bool isOpen() const;
    void close();

    /// Closes everything, then has the item's action run with `event` as the current event. The menus that lead to the
    /// item live until it has returned.
    void choose(std::shared_ptr<Menu> root, std::shared_ptr<MenuItem> item, Event event);

    /// To be called with the view that begin() returned when it has closed, by whatever cause.
    void ended(MenuView& view);

    /// Deletes `view` as soon as no view handles an event and no alert is up.
    void retire(std::unique_ptr<MenuView> view);

    /// Tells of a mouse press at `position` that hits no open menu.
    void pressedOutside(QPoint position);

    /// Whether the press that closed the last menu was made at `position` just before: its release is no second wish.
    bool wasJustClosedAt(QPoint position) const;

private:
    void queueDeletion();
    /// Runs `work` from the event loop, through the gate, unless this object has ended by then.
    void queue(std::function<void()> work);

    FreedesktopEvents& events_;
    std::shared_ptr<DeliveryGate> gate_;
    /// Queued calls end with it. Views that are destroyed still ask for one.
    QObject context_;
    std::unique_ptr<MenuStyle> style_;
    std::unique_ptr<MenuView> root_;
    std::vector<std::unique_ptr<MenuView>> retired_;
    int handlers_ = 0;
    QPoint closingPress_;
    QElapsedTimer sinceClosingPress_;
};

}
