#pragma once

#include "Freedesktop/Interface/MenuView.h"

#include <QAccessible>
#include <QAccessibleObject>
#include <QAccessibleWidget>

#include <vector>

namespace marrowick {

/// The open menus, outermost first.
std::vector<MenuView*> openMenus();

/// A menu's view as an accessibility client sees it; its children are the entries.
class AccessibleMenu : public QAccessibleWidget {
public:
    explicit AccessibleMenu(MenuView& view);

    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(QAccessibleInterface const* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override;
    QAccessibleInterface* parent() const override;
    QString text(QAccessible::Text kind) const override;

private:
    MenuView& view() const { return static_cast<MenuView&>(*widget()); }
};

/// One entry. It can be pressed, or its submenu opened; that one is its child while it is open.
class AccessibleEntry : public QAccessibleObject, private QAccessibleActionInterface {
public:
    explicit AccessibleEntry(MenuEntry& entry);

    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(QAccessibleInterface const* child) const override;
    QAccessibleInterface* parent() const override;
    QString text(QAccessible::Text kind) const override;
    QAccessible::Role role() const override;
    QAccessible::State state() const override;
    QRect rect() const override;
    QWindow* window() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

private:
    QStringList actionNames() const override;
    void doAction(QString const& name) override;
    QStringList keyBindingsForAction(QString const& name) const override;

    MenuEntry& entry() const { return static_cast<MenuEntry&>(*object()); }
    QMenu* openSubmenu() const;
};

}
