#include "Freedesktop/Interface/MenuSession.h"

#include <QApplication>
#include <QScreen>
#include <QWindow>

#include <stdexcept>

namespace marrowick {

void RecordingMenu::menuNeedsUpdate(Menu& menu)
{
    EXPECT_EQ(&menu, this);
    ++updates;
    if (onUpdate)
        onUpdate(*this);
}

void RecordingMenu::willHighlight(Menu& menu, std::shared_ptr<MenuItem> const& item)
{
    EXPECT_EQ(&menu, this);
    highlights.push_back(item ? item->title : "-");
}

bool RecordingMenu::performKeyEquivalent(KeyEvent const& event, std::function<bool()> const& platformsOwn)
{
    keys.push_back(event);
    return onKey ? onKey(event, platformsOwn) : platformsOwn();
}

std::shared_ptr<RecordingMenu> makeMenu(std::vector<std::string> const& titles, MenuAction const& action)
{
    auto menu = std::make_shared<RecordingMenu>("Title");
    menu->autoenablesItems = false;
    for (auto const& title : titles)
        menu->addItem(MenuItem::make(title, action));
    return menu;
}

std::shared_ptr<MenuItem> addSubmenu(Menu& menu, std::string title, std::shared_ptr<Menu> submenu)
{
    auto item = MenuItem::make(std::move(title));
    item->setSubmenu(std::move(submenu));
    menu.addItem(item);
    return item;
}

MenuSession::MenuSession()
    : presenter_(std::make_unique<FreedesktopMenuPresenter>(events_, gate_))
{
    parkPointer();
}

MenuSession::~MenuSession()
{
    presenter_->cancelTracking();
}

MenuView& MenuSession::open(std::shared_ptr<Menu> menu)
{
    movePointer({ 40, 40 });
    presenter_->popUp(std::move(menu), nullptr);
    auto* const view = deepest();
    if (!view)
        throw std::runtime_error("no menu opened");
    parkPointer();
    EXPECT_TRUE(waitFor([view] {
        return view->windowHandle()->isExposed()
            && QCursor::pos() == QGuiApplication::primaryScreen()->geometry().bottomRight();
    }));
    EXPECT_TRUE(waitForHighlight(*view, ""));
    return *view;
}

MenuView* MenuSession::deepest()
{
    return dynamic_cast<MenuView*>(QApplication::activePopupWidget());
}

int MenuSession::depth()
{
    int depth = 0;
    for (auto* view = deepest(); view; view = view->parentView())
        ++depth;
    return depth;
}

bool MenuSession::waitForDepth(int wanted)
{
    return waitFor([wanted] { return depth() == wanted && (!wanted || deepest()->windowHandle()->isExposed()); });
}

std::string MenuSession::highlighted(MenuView const* view)
{
    auto const* const entry = view ? view->highlightedEntry() : nullptr;
    return entry ? entry->item()->title : "";
}

bool MenuSession::waitForHighlight(MenuView const& view, std::string const& title)
{
    return waitFor([&] { return highlighted(&view) == title; });
}

MenuEntry& MenuSession::entry(MenuView const& view, std::string const& title)
{
    for (auto* const action : view.actions()) {
        auto& entry = static_cast<MenuEntry&>(*action);
        if (entry.item()->title == title)
            return entry;
    }
    throw std::runtime_error("no entry " + title);
}

void MenuSession::pressKey(QString const& key)
{
    xdotool(QStringLiteral("key ") + key);
}

void MenuSession::movePointer(QPoint position)
{
    xdotool(QStringLiteral("mousemove %1 %2").arg(position.x()).arg(position.y()));
}

void MenuSession::moveTo(MenuView const& view, std::string const& title)
{
    QPoint const centre = view.mapToGlobal(view.actionGeometry(&entry(view, title)).center());
    // Qt leaves out the first move of a pointer that was outside.
    movePointer(centre - QPoint(6, 1));
    movePointer(centre);
}

void MenuSession::click(MenuView const& view, std::string const& title, int button)
{
    moveTo(view, title);
    ASSERT_TRUE(waitForHighlight(view, title));
    xdotool(QStringLiteral("click %1").arg(button));
}

void MenuSession::parkPointer()
{
    movePointer(QGuiApplication::primaryScreen()->geometry().bottomRight());
}

}
