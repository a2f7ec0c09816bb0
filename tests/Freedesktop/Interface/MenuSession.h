#pragma once

#include "Freedesktop/Interface/FreedesktopEvents.h"
#include "Freedesktop/Interface/FreedesktopMenuPresenter.h"
#include "Freedesktop/Interface/MenuView.h"
#include "Freedesktop/Interface/SessionSupport.h"
#include "Platform/Menu.h"

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace marrowick {

/// A menu that remembers what its view told it.
class RecordingMenu : public Menu {
public:
    using Menu::Menu;

    /// Run by `menuNeedsUpdate`.
    std::function<void(RecordingMenu& menu)> onUpdate;
    /// Run for a key; absent, every key is the platform's own.
    std::function<bool(KeyEvent const& event, std::function<bool()> const& platformsOwn)> onKey;

    int updates = 0;
    /// The titles of the entries that were highlighted, and "-" for none.
    std::vector<std::string> highlights;
    std::vector<KeyEvent> keys;

    void menuNeedsUpdate(Menu& menu) override;
    void willHighlight(Menu& menu, std::shared_ptr<MenuItem> const& item) override;
    bool performKeyEquivalent(KeyEvent const& event, std::function<bool()> const& platformsOwn) override;
};

std::shared_ptr<RecordingMenu> makeMenu(std::vector<std::string> const& titles, MenuAction const& action = {});

/// Appends an entry that opens `submenu`.
std::shared_ptr<MenuItem> addSubmenu(Menu& menu, std::string title, std::shared_ptr<Menu> submenu);

/// Menus on a real display, worked by a real keyboard and mouse. The pointer rests in a corner where no menu comes.
class MenuSession : public testing::Test {
protected:
    MenuSession();
    ~MenuSession() override;

    /// Pops `menu` up away from the pointer and waits until it is on the screen.
    MenuView& open(std::shared_ptr<Menu> menu);

    /// The deepest open menu; null for none.
    static MenuView* deepest();
    static int depth();
    static bool waitForDepth(int depth);

    /// The title of the entry that `view` highlights; empty for none.
    static std::string highlighted(MenuView const* view);
    static bool waitForHighlight(MenuView const& view, std::string const& title);

    static MenuEntry& entry(MenuView const& view, std::string const& title);
    static void pressKey(QString const& key);
    static void movePointer(QPoint position);
    static void moveTo(MenuView const& view, std::string const& title);
    static void click(MenuView const& view, std::string const& title, int button = 1);
    static void parkPointer();

    FreedesktopEvents events_;
    std::shared_ptr<DeliveryGate> gate_ = std::make_shared<DeliveryGate>();
    std::unique_ptr<FreedesktopMenuPresenter> presenter_;
};

}
