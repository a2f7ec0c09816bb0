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
    desktop.alerts.answers = { 3 };
    MWMenuTarget::shared().chooseItem(*folder);
    EXPECT_TRUE(desktop.workspace.opened.empty());
    EXPECT_EQ(desktop.alerts.asked.back().informativeText, "Put first.txt, second.txt into “a”.");
    desktop.finder.selection.clear();
    MWMenuTarget::shared().chooseItem(*folder);
    EXPECT_EQ(desktop.workspace.opened, (std::vector { FileURL("/a") }));
    EXPECT_EQ(desktop.finder.timesAsked(FakeFinder::selectionText), 2u);
    EXPECT_EQ(desktop.finder.timesAsked(FakeFinder::frontWindowText), 2u);
}

TEST_F(MWMenuTargetTest, AScriptGetsTheSelectionAndTheWindowOfTheChoice)
{
    auto const script = itemOf(nodeOf(MenuNodeKind::file(FileURL("/a/x.sh"))));
    desktop.finder.frontWindow = FileURL("/before");
    MWMenuTarget::shared().chooseItem(*script);
    desktop.finder.selectTwoFiles();
    desktop.finder.frontWindow = FileURL("/later");
    MWMenuTarget::shared().chooseItem(*script);
    EXPECT_EQ(desktop.calls,
        (CallRecord { "launch /bin/sh /a/x.sh", "launch /bin/sh /a/x.sh /selected/first.txt /selected/second.txt" }));
    ASSERT_EQ(desktop.tasks.launched.size(), 2u);
    EXPECT_EQ(desktop.tasks.launched[0].environment.at("MW_CLICKWIN"), "/before");
    EXPECT_EQ(desktop.tasks.launched[1].environment.at("MW_CLICKWIN"), "/later");
}

TEST_F(MWMenuTargetTest, TheEventOfTheChoiceIsStillTheCurrentOne)
{
    auto const menu = MWMenu::make("");
    menu->addItem(itemOf(nodeOf(MenuNodeKind::file(FileURL("/a/x.scpt")))));
    desktop.menus.popUp(menu, nullptr);
    desktop.events.held = modifier::option;
    desktop.menus.choose("title");
    EXPECT_EQ(desktop.calls, (CallRecord { "open /a", "select /a/x.scpt", "open /a/x.scpt" }));
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
