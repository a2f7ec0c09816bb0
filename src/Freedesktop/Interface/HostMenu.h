#pragma once

#include "Freedesktop/DeliveryGate.h"
#include "Platform/Menu.h"

#include <QMenu>

#include <functional>
#include <memory>
#include <vector>

namespace marrowick {

class FreedesktopEvents;

/// A menu that another program shows in this one's name. It holds the entries of one level; a submenu is left out.
class HostMenu {
public:
    /// `make` is called when the menu is first asked for; it may answer null, for a menu without entries. While `gate` is
    /// closed the menu stays as it is, and choosing does nothing but show why.
    HostMenu(
        FreedesktopEvents& events, std::shared_ptr<DeliveryGate> gate, std::function<std::shared_ptr<Menu>()> make);

    /// The menu to export; its entries follow the `Menu`'s each time a host says that it is about to show them.
    QMenu& exported();

private:
    void update();
    void rebuild();
    void choose(std::shared_ptr<MenuItem> const& item);

    FreedesktopEvents& events_;
    std::shared_ptr<DeliveryGate> gate_;
    std::function<std::shared_ptr<Menu>()> make_;
    std::shared_ptr<Menu> menu_;
    /// What the exported menu was last built from.
    std::vector<std::shared_ptr<MenuItem>> shown_;
    QMenu exported_;
};

}
