#include "Freedesktop/Interface/MenuSession.h"

#include <QAccessible>
#include <QApplication>
#include <QWindow>

namespace marrowick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class MenuAccessibilityTest : public MenuSession {
protected:
    static std::vector<QAccessibleInterface*> openMenus()
    {
        std::vector<QAccessibleInterface*> menus;
        auto* const application = QAccessible::queryAccessibleInterface(qApp);
        for (int i = 0; i < application->childCount(); ++i) {
            auto* const child = application->child(i);
            if (child && child->role() == QAccessible::PopupMenu) {
                EXPECT_EQ(application->indexOfChild(child), i);
                menus.push_back(child);
            }
        }
        return menus;
    }

    static std::vector<std::string> names(QAccessibleInterface& menu)
    {
        std::vector<std::string> names;
        for (int i = 0; i < menu.childCount(); ++i) {
            auto* const child = menu.child(i);
            EXPECT_EQ(menu.indexOfChild(child), i);
            EXPECT_EQ(child->parent(), &menu);
            names.push_back(
                child->role() == QAccessible::Separator ? "---" : child->text(QAccessible::Name).toStdString());
        }
        return names;
    }

    static void act(QAccessibleInterface& entry, QString const& action)
    {
        ASSERT_TRUE(entry.actionInterface());
        ASSERT_TRUE(entry.actionInterface()->actionNames().contains(action));
        entry.actionInterface()->doAction(action);
    }
};

TEST_F(MenuAccessibilityTest, OnlyAnOpenMenuIsFoundUnderTheApplication)
{
    EXPECT_THAT(openMenus(), IsEmpty());
    open(makeMenu({ "one" }));
    ASSERT_EQ(openMenus().size(), 1U);
    EXPECT_EQ(openMenus()[0]->text(QAccessible::Name), QLatin1String("Title"));
    EXPECT_EQ(openMenus()[0]->parent(), QAccessible::queryAccessibleInterface(qApp));
    presenter_->cancelTracking();
    EXPECT_THAT(openMenus(), IsEmpty());
}

TEST_F(MenuAccessibilityTest, EntriesTellTitleStateAndKeys)
{
    std::string const longName(250, 'm');
    auto const menu = makeMenu({ "a & b", longName });
    menu->addItem(MenuItem::makeSeparator());
    auto const quit = MenuItem::make("Quit", {}, "q");
    menu->addItem(quit);
    auto const disabled = MenuItem::make("disabled");
    disabled->isEnabled = false;
    menu->addItem(disabled);
    addSubmenu(*menu, "folder", makeMenu({ "inside" }));
    auto const& view = open(menu);

    auto& shown = *openMenus().at(0);
    EXPECT_THAT(names(shown), ElementsAre("a & b", longName, "---", "Quit", "disabled", "folder"));
    EXPECT_EQ(shown.child(3)->text(QAccessible::Accelerator), QLatin1String("Super+Q"));
    EXPECT_TRUE(shown.child(4)->state().disabled);
    EXPECT_FALSE(shown.child(3)->state().disabled);
    EXPECT_TRUE(shown.child(5)->state().hasPopup);
    EXPECT_FALSE(shown.child(0)->state().hasPopup);
    EXPECT_TRUE(view.geometry().contains(shown.child(0)->rect()));

    EXPECT_FALSE(shown.child(0)->state().focused);
    pressKey("Down");
    ASSERT_TRUE(waitForHighlight(view, "a & b"));
    EXPECT_TRUE(shown.child(0)->state().focused);
    EXPECT_EQ(shown.focusChild(), shown.child(0));
}

TEST_F(MenuAccessibilityTest, AnEntryOpensItsSubmenuWhichIsThenFoundBelowIt)
{
    auto const inner = makeMenu({ "inside" });
    inner->title = "";
    auto const menu = makeMenu({ "one" });
    addSubmenu(*menu, "folder", inner);
    open(menu);
    auto& folder = *openMenus().at(0)->child(1);
    EXPECT_EQ(folder.childCount(), 0);
    act(folder, QAccessibleActionInterface::showMenuAction());
    ASSERT_TRUE(waitForDepth(2));
    EXPECT_EQ(inner->updates, 1);
    ASSERT_EQ(openMenus().size(), 2U);
    EXPECT_EQ(openMenus()[1]->text(QAccessible::Name), QLatin1String("folder"));
    EXPECT_THAT(names(*openMenus()[1]), ElementsAre("inside"));
    ASSERT_EQ(folder.childCount(), 1);
    EXPECT_EQ(folder.child(0), openMenus()[1]);
    EXPECT_EQ(openMenus()[1]->parent(), &folder);
    act(folder, QAccessibleActionInterface::showMenuAction());
    EXPECT_TRUE(waitForDepth(1));
}

TEST_F(MenuAccessibilityTest, PressingAnEntryClosesTheMenusAndRunsIt)
{
    std::optional<Event> event;
    int depthInAction = -1;
    auto const inner = makeMenu({ "inside" }, [&](MenuItem&) {
        event = events_.currentEvent();
        depthInAction = depth();
    });
    auto const menu = makeMenu({});
    addSubmenu(*menu, "folder", inner);
    open(menu);
    act(*openMenus().at(0)->child(0), QAccessibleActionInterface::showMenuAction());
    ASSERT_TRUE(waitForDepth(2));
    act(*openMenus().at(1)->child(0), QAccessibleActionInterface::pressAction());
    ASSERT_TRUE(waitFor([&] { return event.has_value(); }));
    EXPECT_EQ(event->type, EventType::applicationDefined);
    EXPECT_EQ(depthInAction, 0);
}

TEST_F(MenuAccessibilityTest, PressingADisabledEntryDoesNothing)
{
    bool hasRun = false;
    auto const menu = makeMenu({ "one" }, [&](MenuItem&) { hasRun = true; });
    menu->items()[0]->isEnabled = false;
    open(menu);
    act(*openMenus().at(0)->child(0), QAccessibleActionInterface::pressAction());
    QCoreApplication::processEvents();
    EXPECT_FALSE(hasRun);
    EXPECT_EQ(depth(), 1);
}

}
}
