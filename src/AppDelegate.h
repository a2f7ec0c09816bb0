#pragma once

#include "Menus/MWMenu.h"
#include "Platform/StatusItem.h"

#include <memory>
#include <string>
#include <vector>

namespace marrowick {

/// The program itself: starts it, answers clicks on the status item, and carries out the program's own commands. Owned
/// by a `shared_ptr` for the run. Main thread only.
class AppDelegate : public std::enable_shared_from_this<AppDelegate> {
public:
    void applicationDidFinishLaunching();

    /// Pops up the menu that the click and the modifier keys held ask for.
    void statusItemClicked();

    /// Pops up the main menu at the pointer: the program was started once more.
    void applicationShouldHandleReopen();

    void openPreferences();
    void revealItemsFolder();
    void quit();

private:
    std::shared_ptr<MWMenu> buildAppMenu();
    std::shared_ptr<MWMenu> buildMainItemsMenu();
    std::shared_ptr<MenuItem> submenuItem(std::string title, std::string symbol, std::shared_ptr<Menu> submenu);

    std::vector<std::shared_ptr<MenuItem>> specialItems();
    void appendSpecialAndOwnItems(MWMenu& menu);
    std::shared_ptr<MenuItem> preferencesItem();
    std::shared_ptr<MenuItem> quitItem();
    std::shared_ptr<MWMenu> menuForClick(Event const& event);

    std::unique_ptr<StatusItem> statusItem_;
};

}
