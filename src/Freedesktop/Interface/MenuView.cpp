#include "Freedesktop/Interface/MenuView.h"

#include "Freedesktop/Interface/Conversions.h"
#include "Freedesktop/Interface/Icons.h"
#include "Freedesktop/Interface/MenuTitles.h"
#include "Platform/MenuPlacement.h"

#include <QActionEvent>
#include <QScreen>
#include <QStyleOptionMenuItem>

#include <algorithm>
#include <utility>

namespace marrowick {

MenuEntry::MenuEntry(MenuView& view, std::shared_ptr<MenuItem> item)
    : QAction(nullptr)
    , view_(view)
    , item_(std::move(item))
{
}

MenuView::MenuView(
    MenuTracking& tracking, std::shared_ptr<Menu> root, std::shared_ptr<Menu> menu, MenuEntry* parentEntry)
    : tracking_(tracking)
    , root_(std::move(root))
    , menu_(std::move(menu))
    , parentEntry_(parentEntry)
{
    setStyle(&tracking_.style());
    setSeparatorsCollapsible(false);
    setTitle(titleText(menu_->title));

    // Both signals of an entry reach the menus above it too.
    connect(this, &QMenu::hovered, this, [this](QAction* action) {
        if (auto& entry = static_cast<MenuEntry&>(*action); &entry.view() == this)
            hovered(entry);
    });
    connect(this, &QMenu::triggered, this, [this](QAction* action) {
        if (auto& entry = static_cast<MenuEntry&>(*action); &entry.view() == this)
            triggered(entry);
    });
    // The menu at the top is filled before it is placed.
    if (parentEntry_)
        connect(this, &QMenu::aboutToShow, this, [this] { refresh(); });
}

MenuView::~MenuView()
{
    // Before the menu that their actions are in.
    submenus_.clear();
    entries_.clear();
}

void MenuView::refresh()
{
    menu_->menuNeedsUpdate(*menu_);
    fill();
}

void MenuView::popUp(QPoint near, Placement placement)
{
    // To ask for the size before would lay all entries out twice: the toolkit does that again when the menu pops up.
    placement_ = std::move(placement);
    popup(near);
}

void MenuView::fill()
{
    removeEntries();
    auto const metrics = fontMetrics();
    int const width = titleWidth();

    QList<QAction*> actions;
    actions.reserve(static_cast<qsizetype>(menu_->items().size()));
    entries_.reserve(menu_->items().size());
    for (auto const& item : menu_->items()) {
        auto& entry = entries_.emplace_back(std::make_unique<MenuEntry>(*this, item));
        if (item->isSeparator()) {
            entry->setSeparator(true);
        } else {
            entry->setText(actionText(*item, metrics, width));
            entry->setEnabled(item->isEnabled);
            if (item->image)
                entry->setIcon(iconFor(*item->image));
        }
        // The desktop may hide the icons of menus; these are what people find their files by.
        entry->setIconVisibleInMenu(true);
        actions.append(entry.get());
    }
    addActions(actions);
}

void MenuView::removeEntries()
{
    for (auto& submenu : std::exchange(submenus_, {}))
        tracking_.retire(std::move(submenu));
    highlighted_.reset();
    clear();
    entries_.clear();
}

int MenuView::titleWidth() const
{
    constexpr int characters = 56;
    int const comfortable = fontMetrics().averageCharWidth() * characters;
    return std::min(comfortable, screen()->availableGeometry().width() / 2);
}

QSize MenuView::sizeHint() const
{
    QSize const size = QMenu::sizeHint();
    if (!actions().isEmpty())
        return size;
    // A window without extent is never mapped: the menu would hear no key, and hold the pointer for good.
    auto const metrics = fontMetrics();
    return size.expandedTo(QSize(metrics.averageCharWidth() * 12, metrics.height()));
}

MenuEntry* MenuView::highlightedEntry() const
{
    return static_cast<MenuEntry*>(activeAction());
}

MenuView* MenuView::openSubmenu() const
{
    auto const open
        = std::find_if(submenus_.begin(), submenus_.end(), [](auto const& submenu) { return submenu->isVisible(); });
    return open == submenus_.end() ? nullptr : open->get();
}

void MenuView::actionEvent(QActionEvent* event)
{
    // A submenu changes nothing about the place of its entry, and laying thousands of entries out again takes long.
    if (!isAttaching_)
        QMenu::actionEvent(event);
}

void MenuView::showEvent(QShowEvent* event)
{
    if (placement_)
        move(placement_(sizeHint()));
    // The toolkit tries the same side for every submenu.
    auto const* const parent = parentView();
    if (auto const* const grandparent = parent ? parent->parentView() : nullptr) {
        move(pointFrom(placeSubmenu(rectFrom(geometry()), rectFrom(parent->geometry()),
            rectFrom(grandparent->geometry()), rectFrom(parent->screen()->availableGeometry()))));
    }
    QMenu::showEvent(event);
}

void MenuView::hideEvent(QHideEvent* event)
{
    QMenu::hideEvent(event);
    reportHighlight(nullptr);
    if (!parentEntry_)
        tracking_.ended(*this);
}

void MenuView::initStyleOption(QStyleOptionMenuItem* option, QAction const* action) const
{
    QMenu::initStyleOption(option, action);
    if (action && static_cast<MenuEntry const*>(action)->item()->submenu())
        option->menuItemType = QStyleOptionMenuItem::SubMenu;
}

void MenuView::hovered(MenuEntry& entry)
{
    reportHighlight(&entry);
    if (opensSubmenus_)
        attachSubmenu(entry);
}

void MenuView::triggered(MenuEntry& entry)
{
    auto const event = cause_.value_or(Event { EventType::applicationDefined, tracking_.events().modifierFlags() });
    tracking_.choose(root_, entry.item(), event);
}

void MenuView::activate(MenuEntry& entry)
{
    if (!entry.isEnabled() || entry.isSeparator())
        return;
    if (entry.item()->submenu())
        setActiveAction(&entry);
    else
        entry.trigger();
}

void MenuView::reportHighlight(MenuEntry* entry)
{
    auto const item = entry ? entry->item() : nullptr;
    if (item == highlighted_)
        return;
    highlighted_ = item;
    menu_->willHighlight(*menu_, item);
}

void MenuView::highlightWithoutOpening(MenuEntry& entry)
{
    // Qt opens the submenu of an entry that is made the active one.
    detachSubmenu(entry);
    opensSubmenus_ = false;
    setActiveAction(&entry);
    opensSubmenus_ = true;
    attachSubmenu(entry);
}

void MenuView::scrollToHighlight()
{
    // Qt does not scroll when a key leads from no entry to the last one.
    auto* const entry = highlightedEntry();
    if (entry && !rect().contains(actionGeometry(entry)))
        highlightWithoutOpening(*entry);
}

void MenuView::attachSubmenu(MenuEntry& entry)
{
    auto const& submenu = entry.item()->submenu();
    if (!submenu || entry.menu())
        return;
    dropClosedSubmenus();
    auto& view = submenus_.emplace_back(std::make_unique<MenuView>(tracking_, root_, submenu, &entry));
    isAttaching_ = true;
    entry.setMenu(view.get());
    isAttaching_ = false;
}

void MenuView::detachSubmenu(MenuEntry& entry)
{
    if (auto* const view = entry.menu(); view && view->isVisible())
        view->close();
    isAttaching_ = true;
    entry.setMenu(static_cast<QMenu*>(nullptr));
    isAttaching_ = false;
}

void MenuView::dropClosedSubmenus()
{
    auto const firstClosed = std::stable_partition(
        submenus_.begin(), submenus_.end(), [](auto const& submenu) { return submenu->isVisible(); });
    for (auto submenu = firstClosed; submenu != submenus_.end(); ++submenu) {
        if (auto* const entry = (*submenu)->parentEntry(); entry->menu() == submenu->get())
            detachSubmenu(*entry);
        tracking_.retire(std::move(*submenu));
    }
    submenus_.erase(firstClosed, submenus_.end());
}

}
