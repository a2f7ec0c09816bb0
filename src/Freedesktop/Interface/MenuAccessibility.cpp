#include "Freedesktop/Interface/MenuAccessibility.h"

#include "Freedesktop/Interface/Conversions.h"
#include "Freedesktop/Interface/MenuTitles.h"

#include <QApplication>

namespace marrowick {

namespace {

MenuView* rootView()
{
    for (auto* const widget : QApplication::topLevelWidgets()) {
        auto* const view = dynamic_cast<MenuView*>(widget);
        if (view && !view->parentEntry() && view->isVisible())
            return view;
    }
    return nullptr;
}

QAccessibleInterface* interfaceOf(QObject* object)
{
    return object ? QAccessible::queryAccessibleInterface(object) : nullptr;
}

}

std::vector<MenuView*> openMenus()
{
    std::vector<MenuView*> menus;
    for (auto* view = rootView(); view; view = view->openSubmenu())
        menus.push_back(view);
    return menus;
}

AccessibleMenu::AccessibleMenu(MenuView& view)
    : QAccessibleWidget(&view, QAccessible::PopupMenu)
{
}

int AccessibleMenu::childCount() const
{
    return static_cast<int>(view().actions().size());
}

QAccessibleInterface* AccessibleMenu::child(int index) const
{
    auto const actions = view().actions();
    return index >= 0 && index < actions.size() ? interfaceOf(actions.at(index)) : nullptr;
}

int AccessibleMenu::indexOfChild(QAccessibleInterface const* child) const
{
    auto* const action = child ? dynamic_cast<MenuEntry*>(child->object()) : nullptr;
    return action ? static_cast<int>(view().actions().indexOf(action)) : -1;
}

QAccessibleInterface* AccessibleMenu::childAt(int x, int y) const
{
    return interfaceOf(view().actionAt(view().mapFromGlobal(QPoint(x, y))));
}

QAccessibleInterface* AccessibleMenu::focusChild() const
{
    return interfaceOf(view().activeAction());
}

QAccessibleInterface* AccessibleMenu::parent() const
{
    if (auto* const entry = view().parentEntry())
        return interfaceOf(entry);
    return interfaceOf(qApp);
}

QString AccessibleMenu::text(QAccessible::Text kind) const
{
    if (kind != QAccessible::Name)
        return QAccessibleWidget::text(kind);
    auto const* const entry = view().parentEntry();
    QString const own = displayText(view().menu().title);
    return own.isEmpty() && entry ? wholeTitle(*entry->item()) : own;
}

AccessibleEntry::AccessibleEntry(MenuEntry& entry)
    : QAccessibleObject(&entry)
{
}

QMenu* AccessibleEntry::openSubmenu() const
{
    auto* const submenu = entry().menu();
    return submenu && submenu->isVisible() ? submenu : nullptr;
}

int AccessibleEntry::childCount() const
{
    return openSubmenu() ? 1 : 0;
}

QAccessibleInterface* AccessibleEntry::child(int index) const
{
    return index == 0 ? interfaceOf(openSubmenu()) : nullptr;
}

int AccessibleEntry::indexOfChild(QAccessibleInterface const* child) const
{
    return child && openSubmenu() && child->object() == openSubmenu() ? 0 : -1;
}

QAccessibleInterface* AccessibleEntry::parent() const
{
    return interfaceOf(&entry().view());
}

QString AccessibleEntry::text(QAccessible::Text kind) const
{
    auto const& item = *entry().item();
    switch (kind) {
    case QAccessible::Name:
        return wholeTitle(item);
    case QAccessible::Description:
        return item.image ? displayText(item.image->accessibilityDescription) : QString();
    case QAccessible::Accelerator:
        return shortcutText(item);
    case QAccessible::Value:
    case QAccessible::Help:
    case QAccessible::DebugDescription:
    case QAccessible::UserText:
        break;
    }
    return {};
}

QAccessible::Role AccessibleEntry::role() const
{
    return entry().isSeparator() ? QAccessible::Separator : QAccessible::MenuItem;
}

QAccessible::State AccessibleEntry::state() const
{
    QAccessible::State state;
    auto const& view = entry().view();
    state.disabled = !entry().isEnabled();
    state.invisible = !view.isVisible();
    if (entry().isSeparator())
        return state;
    state.focusable = true;
    state.selectable = true;
    state.focused = view.activeAction() == &entry();
    state.selected = state.focused;
    state.hasPopup = entry().item()->submenu() != nullptr;
    state.expandable = state.hasPopup;
    state.expanded = openSubmenu() != nullptr;
    return state;
}

QRect AccessibleEntry::rect() const
{
    auto const& view = entry().view();
    QRect const place = view.actionGeometry(&entry());
    return { view.mapToGlobal(place.topLeft()), place.size() };
}

QWindow* AccessibleEntry::window() const
{
    return entry().view().windowHandle();
}

void* AccessibleEntry::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::ActionInterface)
        return static_cast<QAccessibleActionInterface*>(this);
    return QAccessibleObject::interface_cast(type);
}

QStringList AccessibleEntry::actionNames() const
{
    if (entry().isSeparator())
        return {};
    return { entry().item()->submenu() ? showMenuAction() : pressAction() };
}

void AccessibleEntry::doAction(QString const& name)
{
    if (!actionNames().contains(name))
        return;
    if (auto* const submenu = openSubmenu())
        submenu->close();
    else
        entry().view().activate(entry());
}

QStringList AccessibleEntry::keyBindingsForAction(QString const&) const
{
    QString const keys = shortcutText(*entry().item());
    return keys.isEmpty() ? QStringList() : QStringList { keys };
}

}
