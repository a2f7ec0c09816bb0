#include "Freedesktop/Interface/Accessibility.h"

#include "Freedesktop/Interface/MenuAccessibility.h"

#include <QAccessible>
#include <QAccessibleObject>
#include <QApplication>

namespace marrowick {

namespace {

/// The application with its open menus behind its windows.
class AccessibleApplication : public QAccessibleApplication {
public:
    int childCount() const override { return windowCount() + static_cast<int>(openMenus().size()); }

    QAccessibleInterface* child(int index) const override
    {
        if (index < windowCount())
            return QAccessibleApplication::child(index);
        auto const menus = openMenus();
        auto const menu = static_cast<std::size_t>(index - windowCount());
        return menu < menus.size() ? QAccessible::queryAccessibleInterface(menus[menu]) : nullptr;
    }

    int indexOfChild(QAccessibleInterface const* child) const override
    {
        auto const menus = openMenus();
        for (std::size_t i = 0; child && i < menus.size(); ++i) {
            if (menus[i] == child->object())
                return windowCount() + static_cast<int>(i);
        }
        return QAccessibleApplication::indexOfChild(child);
    }

    QAccessibleInterface* focusChild() const override
    {
        auto const menus = openMenus();
        if (menus.empty())
            return QAccessibleApplication::focusChild();
        auto* const deepest = QAccessible::queryAccessibleInterface(menus.back());
        auto* const entry = deepest ? deepest->focusChild() : nullptr;
        return entry ? entry : deepest;
    }

private:
    int windowCount() const { return QAccessibleApplication::childCount(); }
};

QAccessibleInterface* makeInterface(QString const&, QObject* object)
{
    if (auto* const view = dynamic_cast<MenuView*>(object))
        return new AccessibleMenu(*view);
    if (auto* const entry = dynamic_cast<MenuEntry*>(object))
        return new AccessibleEntry(*entry);
    if (object == qApp)
        return new AccessibleApplication;
    return nullptr;
}

}

void installMenuAccessibility()
{
    static bool isInstalled = false;
    if (isInstalled)
        return;
    isInstalled = true;
    // A bridge that is up already has asked for the application's interface, which is kept from then on.
    if (auto* const earlier = QAccessible::queryAccessibleInterface(qApp))
        QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(earlier));
    QAccessible::installFactory(makeInterface);
}

}
