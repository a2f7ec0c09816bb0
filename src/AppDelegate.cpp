#include "AppDelegate.h"

#include "Menus/DesktopMenuBuilder.h"
#include "Menus/MenuBuilder.h"
#include "Menus/PrefPanesMenuBuilder.h"
#include "Menus/ProcessesMenuBuilder.h"
#include "Menus/RecentItemsMenuBuilder.h"
#include "Platform/Platform.h"
#include "Support/AppEnvironment.h"
#include "Support/FinderSyncBridge.h"
#include "Support/Preferences.h"
#include "UI/PreferencesWindowController.h"

#include <utility>

namespace marrowick {

namespace {

constexpr std::uint64_t eventMask(EventType type)
{
    return std::uint64_t { 1 } << static_cast<unsigned>(type);
}

}

void AppDelegate::applicationDidFinishLaunching()
{
    assertMainThread();
    auto& application = *platform().application;
    application.setAccessoryActivationPolicy();
    Preferences::shared().ensureItemsFolderExists();
    AppEnvironment::shared();
    FinderSyncBridge::shared().start();

    auto const weakSelf = weak_from_this();
    application.setReopenHandler([weakSelf] {
        if (auto const self = weakSelf.lock())
            self->applicationShouldHandleReopen();
    });
    statusItem_ = platform().statusBar->makeStatusItem(StatusBar::squareLength);
    auto* button = statusItem_->button();
    if (!button)
        return;
    button->setImage(Image::systemSymbol("arrowtriangle.down.square", "Marrowick"));
    button->setAction([weakSelf] {
        if (auto const self = weakSelf.lock())
            self->statusItemClicked();
    });
    button->sendActionOn(eventMask(EventType::leftMouseUp) | eventMask(EventType::rightMouseUp));
    statusItem_->setHostMenu([weakSelf]() -> std::shared_ptr<Menu> {
        auto const self = weakSelf.lock();
        return self ? self->buildAppMenu() : nullptr;
    });
}

void AppDelegate::statusItemClicked()
{
    assertMainThread();
    auto const event = platform().events->currentEvent();
    if (!event || !statusItem_ || !statusItem_->button())
        return;
    platform().menuPresenter->popUp(menuForClick(*event), statusItem_.get());
}

void AppDelegate::applicationShouldHandleReopen()
{
    platform().menuPresenter->popUp(buildMainItemsMenu(), nullptr);
}

std::shared_ptr<MWMenu> AppDelegate::menuForClick(Event const& event)
{
    if (event.type == EventType::rightMouseUp)
        return buildAppMenu();
    if (event.flags.contains(modifier::shift))
        return DesktopMenuBuilder::build();
    if (event.flags.contains(modifier::command))
        return ProcessesMenuBuilder::build(false);
    return buildMainItemsMenu();
}

void AppDelegate::openPreferences()
{
    assertMainThread();
    PreferencesWindowController::shared().show();
}

void AppDelegate::revealItemsFolder()
{
    assertMainThread();
    Preferences::shared().ensureItemsFolderExists();
    platform().workspace->activateFileViewerSelecting({ Preferences::shared().itemsFolderURL() });
}

void AppDelegate::quit()
{
    assertMainThread();
    platform().application->terminate();
}

std::shared_ptr<MWMenu> AppDelegate::buildAppMenu()
{
    auto menu = MWMenu::make("Marrowick");
    menu->addItem(preferencesItem());
    menu->addItem(MenuItem::make("Reveal Items Folder", [weakSelf = weak_from_this()](MenuItem&) {
        if (auto const self = weakSelf.lock())
            self->revealItemsFolder();
    }));
    menu->addItem(MenuItem::makeSeparator());
    menu->addItem(quitItem());
    return menu;
}

std::shared_ptr<MWMenu> AppDelegate::buildMainItemsMenu()
{
    auto menu = MenuBuilder::buildItemsMenu("Marrowick", Preferences::shared().itemsFolderURL(), std::nullopt);
    menu->refresh
        = [itemsRefresh = std::move(menu->refresh), weakSelf = weak_from_this(), weakMenu = std::weak_ptr(menu)] {
              itemsRefresh();
              auto const self = weakSelf.lock();
              auto const filled = weakMenu.lock();
              if (self && filled)
                  self->appendSpecialAndOwnItems(*filled);
          };
    return menu;
}

void AppDelegate::appendSpecialAndOwnItems(MWMenu& menu)
{
    auto special = specialItems();
    if (!special.empty())
        menu.addItem(MenuItem::makeSeparator());
    for (auto& item : special)
        menu.addItem(std::move(item));
    menu.addItem(MenuItem::makeSeparator());
    menu.addItem(preferencesItem());
    menu.addItem(quitItem());
}

std::vector<std::shared_ptr<MenuItem>> AppDelegate::specialItems()
{
    auto const& preferences = Preferences::shared();
    std::vector<std::shared_ptr<MenuItem>> items;
    if (preferences.addDesktopSubmenu())
        items.push_back(submenuItem("Desktop", "menubar.dock.rectangle", DesktopMenuBuilder::build()));
    if (preferences.addProcessesSubmenu())
        items.push_back(submenuItem("Processes", "square.stack.3d.up", ProcessesMenuBuilder::build(false)));
    if (preferences.addPrefPanesSubmenu())
        items.push_back(submenuItem("Preference Panes", "gearshape", PrefPanesMenuBuilder::build()));
    if (preferences.addRecentItemsSubmenu())
        items.push_back(submenuItem("Recent Items", "clock", RecentItemsMenuBuilder::build()));
    return items;
}

std::shared_ptr<MenuItem> AppDelegate::submenuItem(std::string title, std::string symbol, std::shared_ptr<Menu> submenu)
{
    auto item = MenuItem::make(std::move(title));
    item->image = Image::systemSymbol(std::move(symbol));
    item->setSubmenu(std::move(submenu));
    return item;
}

std::shared_ptr<MenuItem> AppDelegate::preferencesItem()
{
    return MenuItem::make(
        "Preferences…",
        [weakSelf = weak_from_this()](MenuItem&) {
            if (auto const self = weakSelf.lock())
                self->openPreferences();
        },
        ",");
}

std::shared_ptr<MenuItem> AppDelegate::quitItem()
{
    return MenuItem::make(
        "Quit Marrowick",
        [weakSelf = weak_from_this()](MenuItem&) {
            if (auto const self = weakSelf.lock())
                self->quit();
        },
        "q");
}

}
