#include "Freedesktop/Interface/HostMenu.h"

#include "Freedesktop/Interface/Conversions.h"
#include "Freedesktop/Interface/FreedesktopEvents.h"

#include <QCoreApplication>

#include <utility>

namespace marrowick {

namespace {

bool canBeChosen(Menu const& menu, MenuItem const& item)
{
    return menu.autoenablesItems ? static_cast<bool>(item.action) : item.isEnabled;
}

}

HostMenu::HostMenu(
    FreedesktopEvents& events, std::shared_ptr<DeliveryGate> gate, std::function<std::shared_ptr<Menu>()> make)
    : events_(events)
    , gate_(std::move(gate))
    , make_(std::move(make))
{
    QObject::connect(&exported_, &QMenu::aboutToShow, [this] { update(); });
}

QMenu& HostMenu::exported()
{
    update();
    return exported_;
}

void HostMenu::update()
{
    if (gate_->isClosed())
        return;
    if (!menu_)
        menu_ = make_ ? make_() : nullptr;
    if (!menu_)
        return;
    menu_->menuNeedsUpdate(*menu_);
    // A host that is told of a change while it shows the menu may close it.
    if (menu_->items() != shown_)
        rebuild();
}

void HostMenu::rebuild()
{
    exported_.clear();
    shown_ = menu_->items();
    for (auto const& item : shown_) {
        if (item->submenu())
            continue;
        if (item->isSeparator()) {
            exported_.addSeparator();
            continue;
        }
        auto title = titleText(item->title);
        // As a shortcut of the action, hosts would name the key each in its own way, and some leave the comma out.
        if (!item->keyEquivalent.empty())
            title += QStringLiteral("\tSuper+") + exactText(item->keyEquivalent).toUpper();
        auto* action = exported_.addAction(title);
        action->setEnabled(canBeChosen(*menu_, *item));
        QObject::connect(action, &QAction::triggered, &exported_, [this, item] { choose(item); });
    }
}

void HostMenu::choose(std::shared_ptr<MenuItem> const& item)
{
    if (gate_->turnsUserAway())
        return;
    Event const event { EventType::applicationDefined, events_.modifierFlags() };
    // Later, since an action may end with this menu or wait for the user while the host waits for its answer.
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [&events = events_, gate = gate_, menu = menu_, item, event] {
            gate->deliver([&events, menu, item, event] {
                FreedesktopEvents::Scope const scope(events, event);
                if (item->action)
                    item->action(*item);
            });
        },
        Qt::QueuedConnection);
}

}
