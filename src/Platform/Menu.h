#pragma once

#include "Platform/Events.h"
#include "Platform/Image.h"

#include <any>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace marrowick {

class Menu;
class MenuItem;

/// What choosing an entry does; the entry itself is the sender.
using MenuAction = std::function<void(MenuItem& sender)>;

/// One entry of a menu. Main thread only.
class MenuItem {
public:
    /// An entry that can be chosen when it has an action, and that does nothing when it has none.
    static std::shared_ptr<MenuItem> make(std::string title, MenuAction action = {}, std::string keyEquivalent = {});
    static std::shared_ptr<MenuItem> makeSeparator();

    bool isSeparator() const { return isSeparator_; }

    /// The text shown, in the bytes it was given; a desktop side repairs it for display.
    std::string title;
    MenuAction action;
    /// The character shown with the Command key beside the title; empty for none.
    std::string keyEquivalent;
    std::optional<Image> image;
    bool isEnabled = true;
    /// A `MenuNode`, or a `std::shared_ptr<RunningApplication>`, or nothing.
    std::any representedObject;

    std::shared_ptr<Menu> const& submenu() const { return submenu_; }
    void setSubmenu(std::shared_ptr<Menu> submenu) { submenu_ = std::move(submenu); }

    /// The menu that holds this entry; absent when it is in none or when that menu is gone.
    std::shared_ptr<Menu> menu() const { return menu_.lock(); }

private:
    friend class Menu;
    MenuItem() = default;

    bool isSeparator_ = false;
    std::shared_ptr<Menu> submenu_;
    std::weak_ptr<Menu> menu_;
};

/// A menu as the program sees it: a title and entries. A desktop side draws it and drives it by `menuNeedsUpdate`,
/// `willHighlight` and `performKeyEquivalent`. A menu owns its entries and an entry its submenu; references that point
/// the other way are weak. Main thread only.
class Menu : public std::enable_shared_from_this<Menu> {
public:
    explicit Menu(std::string title);
    virtual ~Menu() = default;
    Menu(Menu const&) = delete;
    Menu& operator=(Menu const&) = delete;

    std::string title;
    /// Whether the desktop decides which entries are enabled; where it is off, `MenuItem::isEnabled` does.
    bool autoenablesItems = true;

    std::vector<std::shared_ptr<MenuItem>> const& items() const { return items_; }

    /// Appends `item`, which must be in no other menu. The menu itself must be owned by a `shared_ptr`.
    void addItem(std::shared_ptr<MenuItem> item);
    void removeAllItems();

    /// Sent once before every opening, before the entries are looked at.
    virtual void menuNeedsUpdate(Menu& menu);

    /// Sent when the highlight moves to `item` of this menu, or leaves the menu (null).
    virtual void willHighlight(Menu& menu, std::shared_ptr<MenuItem> const& item);

    /// Sent for a key event while the menu is open. `platformsOwn` is what the desktop's menu would do with the event;
    /// its answer tells whether that handled it. Returns whether the event was handled.
    virtual bool performKeyEquivalent(KeyEvent const& event, std::function<bool()> const& platformsOwn);

private:
    std::vector<std::shared_ptr<MenuItem>> items_;
};

}
