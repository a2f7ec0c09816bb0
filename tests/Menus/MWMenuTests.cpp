#include "Fakes/TestPlatform.h"
#include "Menus/MWMenu.h"

#include <memory>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

class MWMenuTest : public PlatformTest {
protected:
    std::shared_ptr<MWMenu> const menu = MWMenu::make("Title");
};

TEST_F(MWMenuTest, AFreshMenuHasATitleAndNothingElse)
{
    EXPECT_EQ(menu->title, "Title");
    EXPECT_FALSE(menu->refresh);
    EXPECT_EQ(menu->copyDestination, std::nullopt);
    EXPECT_EQ(menu->lastHighlightedItem(), nullptr);
    EXPECT_TRUE(menu->items().empty());
}

TEST_F(MWMenuTest, EntriesAreEnabledExactlyAsTheyWereMade)
{
    EXPECT_FALSE(menu->autoenablesItems);
}

TEST_F(MWMenuTest, RefreshRunsBeforeEachOpening)
{
    int refreshes = 0;
    menu->refresh = [&] { ++refreshes; };
    EXPECT_EQ(refreshes, 0);
    desktop.menus.popUp(menu, nullptr);
    EXPECT_EQ(refreshes, 1);
    desktop.menus.popUp(menu, nullptr);
    EXPECT_EQ(refreshes, 2);
}

TEST_F(MWMenuTest, WhicheverMenuIsNamedTheMenuRefreshesItself)
{
    int refreshes = 0;
    menu->refresh = [&] { ++refreshes; };
    auto const other = MWMenu::make("Other");
    menu->menuNeedsUpdate(*other);
    EXPECT_EQ(refreshes, 1);
}

TEST_F(MWMenuTest, WithoutRefreshTheMenuOpensWithTheEntriesItHas)
{
    menu->addItem(MenuItem::make("Entry"));
    desktop.menus.popUp(menu, nullptr);
    EXPECT_EQ(desktop.menus.shown(), (std::vector<std::string> { "Entry" }));
}

TEST_F(MWMenuTest, RemembersTheEntryThatIsHighlighted)
{
    menu->addItem(MenuItem::make("a"));
    menu->addItem(MenuItem::make("b"));
    desktop.menus.popUp(menu, nullptr);
    desktop.menus.highlight("a");
    EXPECT_EQ(menu->lastHighlightedItem(), menu->items()[0]);
    desktop.menus.highlight("b");
    EXPECT_EQ(menu->lastHighlightedItem(), menu->items()[1]);
    desktop.menus.unhighlight();
    EXPECT_EQ(menu->lastHighlightedItem(), nullptr);
}

TEST_F(MWMenuTest, AHighlightedEntryThatGoesAwayIsForgotten)
{
    menu->addItem(MenuItem::make("a"));
    menu->willHighlight(*menu, menu->items()[0]);
    menu->removeAllItems();
    EXPECT_EQ(menu->lastHighlightedItem(), nullptr);
}

}
}
