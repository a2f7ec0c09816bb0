#include "Platform/Menu.h"

#include <memory>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

TEST(MenuTest, AnEntryKnowsItsMenu)
{
    auto const menu = std::make_shared<Menu>("Title");
    auto const item = MenuItem::make("Entry");
    EXPECT_EQ(item->menu(), nullptr);
    menu->addItem(item);
    EXPECT_EQ(item->menu(), menu);
}

TEST(MenuTest, ARemovedEntryIsInNoMenu)
{
    auto const menu = std::make_shared<Menu>("Title");
    auto const item = MenuItem::make("Entry");
    menu->addItem(item);
    menu->removeAllItems();
    EXPECT_TRUE(menu->items().empty());
    EXPECT_EQ(item->menu(), nullptr);
}

TEST(MenuTest, AnEntryDoesNotKeepItsMenu)
{
    auto menu = std::make_shared<Menu>("Title");
    std::weak_ptr<Menu> const watched = menu;
    auto const item = MenuItem::make("Entry");
    menu->addItem(item);
    menu.reset();
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(item->menu(), nullptr);
}

TEST(MenuTest, AMenuKeepsItsEntriesAndTheyTheirSubmenus)
{
    auto menu = std::make_shared<Menu>("Top");
    auto submenu = std::make_shared<Menu>("Below");
    std::weak_ptr<Menu> const watched = submenu;
    auto item = MenuItem::make("Entry");
    item->setSubmenu(std::move(submenu));
    menu->addItem(std::move(item));
    ASSERT_FALSE(watched.expired());
    EXPECT_EQ(menu->items().front()->submenu(), watched.lock());
    menu.reset();
    EXPECT_TRUE(watched.expired());
}

TEST(MenuTest, EntriesAreInTheOrderInWhichTheyWereAdded)
{
    auto const menu = std::make_shared<Menu>("Title");
    menu->addItem(MenuItem::make("b"));
    menu->addItem(MenuItem::makeSeparator());
    menu->addItem(MenuItem::make("a"));
    ASSERT_EQ(menu->items().size(), 3u);
    EXPECT_EQ(menu->items()[0]->title, "b");
    EXPECT_TRUE(menu->items()[1]->isSeparator());
    EXPECT_EQ(menu->items()[2]->title, "a");
    EXPECT_FALSE(menu->items()[2]->isSeparator());
}

TEST(MenuTest, AFreshEntryIsEnabledAndHasNothingElse)
{
    auto const item = MenuItem::make("Entry");
    EXPECT_EQ(item->title, "Entry");
    EXPECT_TRUE(item->isEnabled);
    EXPECT_FALSE(item->action);
    EXPECT_EQ(item->keyEquivalent, "");
    EXPECT_FALSE(item->image);
    EXPECT_FALSE(item->representedObject.has_value());
    EXPECT_EQ(item->submenu(), nullptr);
}

TEST(MenuTest, APlainMenuLeavesKeysToTheDesktop)
{
    auto const menu = std::make_shared<Menu>("Title");
    for (bool const answer : { true, false }) {
        int asked = 0;
        EXPECT_EQ(menu->performKeyEquivalent({ EventType::keyDown, {}, "r" },
                      [&] {
                          ++asked;
                          return answer;
                      }),
            answer);
        EXPECT_EQ(asked, 1);
    }
}

}
}
