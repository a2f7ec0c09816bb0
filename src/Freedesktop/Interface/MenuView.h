#pragma once

#include "Freedesktop/Interface/MenuTracking.h"
#include "Platform/Menu.h"

#include <QMenu>

#include <functional>
#include <memory>
#include <vector>

class QHelpEvent;

namespace marrowick {

class MenuView;

/// The QAction of one entry.
class MenuEntry : public QAction {
public:
    MenuEntry(MenuView& view, std::shared_ptr<MenuItem> item);

    MenuView& view() const { return view_; }
    std::shared_ptr<MenuItem> const& item() const { return item_; }

private:
    MenuView& view_;
    std::shared_ptr<MenuItem> item_;
};

/// Shows a `Menu` and drives it. The entries are those that the menu has when it is filled; views of submenus are made
/// when their entry is highlighted and filled when they open.
class MenuView : public QMenu {
public:
    /// `root` is the menu at the top, `parentEntry` the entry that opens this one; null for the one at the top.
    MenuView(MenuTracking& tracking, std::shared_ptr<Menu> root, std::shared_ptr<Menu> menu, MenuEntry* parentEntry);
    ~MenuView() override;

    /// Sends `menuNeedsUpdate`, then shows what the menu holds.
    void refresh();

    /// Tells the place of a menu of the given size.
    using Placement = std::function<QPoint(QSize)>;

    /// Shows the menu at the place that `placement` tells once its size is known, on the screen of `near`.
    void popUp(QPoint near, Placement placement);

    Menu& menu() const { return *menu_; }
    MenuEntry* parentEntry() const { return parentEntry_; }
    MenuView* parentView() const { return parentEntry_ ? &parentEntry_->view() : nullptr; }
    MenuEntry* highlightedEntry() const;
    /// The view of the submenu that is open; null for none.
    MenuView* openSubmenu() const;

    /// Does what a click on `entry` does, asked for by another program.
    void activate(MenuEntry& entry);

    /// The width that a title may have in this menu.
    int titleWidth() const;

    QSize sizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void actionEvent(QActionEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void initStyleOption(QStyleOptionMenuItem* option, QAction const* action) const override;

private:
    bool handle(QEvent& event);
    bool keyPressed(QKeyEvent& event);
    bool toolkitsOwn(QKeyEvent& event, KeyEvent const& keyEvent);
    bool typeAhead(QString const& typed);
    void mousePressed(QMouseEvent const& event);
    bool showToolTip(QHelpEvent const& event);

    void fill();
    void removeEntries();
    void highlightWithoutOpening(MenuEntry& entry);
    void scrollToHighlight();
    void hovered(MenuEntry& entry);
    void triggered(MenuEntry& entry);
    void reportHighlight(MenuEntry* entry);

    void attachSubmenu(MenuEntry& entry);
    void detachSubmenu(MenuEntry& entry);
    void dropClosedSubmenus();

    MenuTracking& tracking_;
    std::shared_ptr<Menu> root_;
    std::shared_ptr<Menu> menu_;
    MenuEntry* parentEntry_;
    std::vector<std::unique_ptr<MenuEntry>> entries_;
    std::vector<std::unique_ptr<MenuView>> submenus_;
    /// What the menu was last told.
    std::shared_ptr<MenuItem> highlighted_;
    /// The user's action that is being handled; absent where another program's is.
    std::optional<Event> cause_;
    /// For the one at the top.
    Placement placement_;
    bool opensSubmenus_ = true;
    bool isAttaching_ = false;
};

}
