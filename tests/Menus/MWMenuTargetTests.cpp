#include "Fakes/FakeRunningApplication.h"
#include "Fakes/TestPlatform.h"
#include "Menus/MWMenu.h"
#include "Menus/MWMenuTarget.h"
#include "Models/MenuNode.h"

#include <any>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

class MWMenuTargetTest : public PlatformTest {
protected:
    static std::shared_ptr<MenuItem> itemOf(std::any represented)
    {
        auto item = MenuItem::make("title", [](MenuItem& sender) { MWMenuTarget::shared().chooseItem(sender); });
        item->representedObject = std::move(represented);
        return item;
    }
    static MenuNode nodeOf(MenuNodeKind kind) { return { std::move(kind), "title", {}, std::nullopt }; }

    FileURL const file { "/a/\xFF file" };
};

TEST_F(MWMenuTargetTest, OpensTheFileOfTheChosenEntry)
{
    MWMenuTarget::shared().chooseItem(*itemOf(nodeOf(MenuNodeKind::file(file))));
    EXPECT_EQ(desktop.workspace.opened, (std::vector { file }));
}

TEST_F(MWMenuTargetTest, AnEntryWithoutANodeDoesNothing)
{
    auto const application = FakeRunningApplication::make("org.example");
    for (auto const& represented : { std::any(), std::any(std::string("text")), std::any(file), std::any(42),
             std::any(std::shared_ptr<RunningApplication>(application)) })
        MWMenuTarget::shared().chooseItem(*itemOf(represented));
    EXPECT_TRUE(desktop.workspace.opened.empty());
    EXPECT_TRUE(desktop.finder.questions.empty());
}

TEST_F(MWMenuTargetTest, TheSituationIsThatOfTheChoice)
{
    auto const folder = itemOf(nodeOf(MenuNodeKind::folder(FileURL("/a"))));
    desktop.finder.selectTwoFiles();
    MWMenuTarget::shared().chooseItem(*folder);
    EXPECT_TRUE(desktop.workspace.opened.empty());
    desktop.finder.selection.clear();
    MWMenuTarget::shared().chooseItem(*folder);
    EXPECT_EQ(desktop.workspace.opened, (std::vector { FileURL("/a") }));
    EXPECT_EQ(desktop.finder.timesAsked(FakeFinder::selectionText), 2u);
    EXPECT_EQ(desktop.finder.timesAsked(FakeFinder::frontWindowText), 2u);
}

TEST_F(MWMenuTargetTest, AnEntryOfATemplateMenuIsNotOpened)
{
    auto const menu = MWMenu::make("");
    menu->copyDestination = FileURL("/destination");
    menu->addItem(itemOf(nodeOf(MenuNodeKind::file(file))));
    desktop.menus.popUp(menu, nullptr);
    desktop.menus.choose("title");
    EXPECT_TRUE(desktop.workspace.opened.empty());
}

TEST_F(MWMenuTargetTest, TheCopyDestinationIsThatOfTheEntrysOwnMenu)
{
    auto const menu = MWMenu::make("");
    menu->copyDestination = FileURL("/destination");
    auto const submenu = MWMenu::make("");
    submenu->addItem(itemOf(nodeOf(MenuNodeKind::file(file))));
    auto holder = MenuItem::make("holder");
    holder->setSubmenu(submenu);
    menu->addItem(std::move(holder));
    desktop.menus.popUp(menu, nullptr);
    desktop.menus.openSubmenu("holder");
    desktop.menus.choose("title");
    EXPECT_EQ(desktop.workspace.opened, (std::vector { file }));
}

TEST_F(MWMenuTargetTest, AnEntryOfAnotherMenuHasNoCopyDestination)
{
    auto const menu = std::make_shared<Menu>("plain");
    auto const item = itemOf(nodeOf(MenuNodeKind::file(file)));
    menu->addItem(item);
    MWMenuTarget::shared().chooseItem(*item);
    EXPECT_EQ(desktop.workspace.opened, (std::vector { file }));
}

TEST_F(MWMenuTargetTest, AnEntryThatGoesAwayWhileItIsChosenIsStillCarriedOut)
{
    auto const menu = MWMenu::make("");
    menu->addItem(itemOf(nodeOf(MenuNodeKind::file(file))));
    desktop.workspace.whenAsked = [&] { menu->removeAllItems(); };
    desktop.menus.popUp(menu, nullptr);
    desktop.menus.choose("title");
    EXPECT_EQ(desktop.workspace.opened, (std::vector { file }));
}

}
}
