#pragma once

#include "Platform/Menu.h"

#include <memory>

namespace marrowick {

class StatusItem;

/// Shows menus. Main thread only.
///
/// Before a menu shows, at every depth, it is sent `menuNeedsUpdate` once. A chosen entry's action runs after all menus
/// have closed, with the choice as the current event; the presenter holds the root menu until that action has returned.
class MenuPresenter {
public:
    virtual ~MenuPresenter() = default;

    /// Pops `menu` up beside `item`, or at the pointer when `item` is null or its place is unknown. Returns while it is
    /// open. A menu that is open already closes first.
    virtual void popUp(std::shared_ptr<Menu> menu, StatusItem* item) = 0;

    /// Closes all open menus without a choice. Nothing when none is open.
    virtual void cancelTracking() = 0;
};

}
