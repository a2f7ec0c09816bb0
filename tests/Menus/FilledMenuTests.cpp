#include "Fakes/DiskTest.h"
#include "Fakes/FakeRunningApplication.h"
#include "Menus/MWMenu.h"
#include "Menus/MenuBuilder.h"
#include "Support/AppEnvironment.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

using Shown = std::vector<std::string>;
constexpr auto emptyEntry = "[(Empty — drag items into this folder)]";

class FilledMenuTest : public DiskTest {
protected:
    Shown open(FileURL const& of)
    {
        desktop.menus.popUp(MenuBuilder::buildItemsMenu("Title", of, std::nullopt), nullptr);
        return desktop.menus.shown();
    }
    Shown open() { return open(folder.url()); }
    Shown openSubmenu(std::string_view title)
    {
        desktop.menus.openSubmenu(title);
        return desktop.menus.shown();
    }
};

TEST_F(FilledMenuTest, AMenuIsMadeEmptyWithItsTitleAndDestination)
{
    folder.file("a");
    auto const menu = MenuBuilder::buildItemsMenu("Title", folder.url(), FileURL("/destination"));
    EXPECT_EQ(menu->title, "Title");
    EXPECT_EQ(menu->copyDestination, FileURL("/destination"));
    EXPECT_TRUE(menu->items().empty());
    EXPECT_TRUE(desktop.fileManager.listed.empty());
    EXPECT_TRUE(desktop.finder.questions.empty());
}

TEST_F(FilledMenuTest, AnOpenedMenuShowsTheFolder)
{
    folder.file("b.txt");
    folder.folder("a folder");
    folder.file("01)line----");
    EXPECT_EQ(open(), (Shown { "---", "a folder", "b.txt" }));
}

TEST_F(FilledMenuTest, AnEmptyFolderShowsThePlaceholder)
{
    EXPECT_EQ(open(), Shown { emptyEntry });
    desktop.defaults.set("ignoreEmptyItemsFolder", true);
    EXPECT_EQ(open(), Shown {});
}

TEST_F(FilledMenuTest, AFolderThatCannotBeReadShowsThePlaceholder)
{
    EXPECT_EQ(open(folder / "missing"), Shown { emptyEntry });
    EXPECT_TRUE(desktop.log.lines().empty());
}

TEST_F(FilledMenuTest, EachOpeningReadsTheFolderAnew)
{
    folder.file("a");
    auto const menu = MenuBuilder::buildItemsMenu("", folder.url(), std::nullopt);
    desktop.menus.popUp(menu, nullptr);
    EXPECT_EQ(desktop.menus.shown(), (Shown { "a" }));
    folder.file("b");
    desktop.menus.popUp(menu, nullptr);
    EXPECT_EQ(desktop.menus.shown(), (Shown { "a", "b" }));
    folder.remove("a");
    folder.remove("b");
    desktop.menus.popUp(menu, nullptr);
    EXPECT_EQ(desktop.menus.shown(), Shown { emptyEntry });
}

TEST_F(FilledMenuTest, OneOpeningReadsOneFolderAndAsksTheFileManagerOnce)
{
    folder.folder("a/b");
    folder.file("c");
    open();
    EXPECT_EQ(desktop.fileManager.listed, (std::vector { folder.url() }));
    EXPECT_EQ(desktop.finder.timesAsked(FakeFinder::selectionText), 1u);
    EXPECT_EQ(desktop.finder.timesAsked(FakeFinder::frontWindowText), 1u);
}

TEST_F(FilledMenuTest, ASubmenuIsReadWhenItOpens)
{
    folder.folder("a/b");
    open();
    folder.file("a/c");
    EXPECT_EQ(openSubmenu("a"), (Shown { "b", "c" }));
    EXPECT_EQ(openSubmenu("b"), Shown { emptyEntry });
    EXPECT_EQ(desktop.fileManager.listed, (std::vector { folder.url(), folder / "a", folder / "a/b" }));
    EXPECT_EQ(desktop.finder.timesAsked(FakeFinder::selectionText), 3u);
}

TEST_F(FilledMenuTest, ASubmenuOpenedAgainIsReadAgain)
{
    folder.folder("a");
    open();
    EXPECT_EQ(openSubmenu("a"), Shown { emptyEntry });
    desktop.menus.closeSubmenu();
    folder.file("a/new");
    EXPECT_EQ(openSubmenu("a"), (Shown { "new" }));
}

TEST_F(FilledMenuTest, WhatIsShownFollowsTheSituationOfTheOpening)
{
    folder.file("files---f");
    folder.file("no files---N");
    folder.file("edit com.example-!!!");
    AppEnvironment::shared();
    EXPECT_EQ(open(), (Shown { "no files" }));
    desktop.finder.selectTwoFiles();
    desktop.workspace.activate(FakeRunningApplication::make("com.example.Editor"));
    EXPECT_EQ(open(), (Shown { "edit", "files" }));
}

TEST_F(FilledMenuTest, ChosenFilesAndFoldersOpen)
{
    folder.file("a.txt");
    folder.folder("b---X");
    open();
    desktop.menus.choose("a.txt");
    open();
    desktop.menus.choose("b");
    EXPECT_EQ(desktop.workspace.opened, (std::vector { folder / "a.txt", folder / "b---X" }));
}

TEST_F(FilledMenuTest, AFileOfASubmenuOpens)
{
    folder.folder("a");
    folder.file("a/inside");
    open();
    desktop.menus.openSubmenu("a");
    desktop.menus.choose("inside");
    EXPECT_EQ(desktop.workspace.opened, (std::vector { folder / "a/inside" }));
}

TEST_F(FilledMenuTest, NamesThatAreNoTextKeepTheirBytesDownToTheChoice)
{
    std::string const outer = "\xFFouter\xC3(";
    std::string const inner = "caf\xE9 \x01\n\xF0\x9F";
    folder.folder(outer);
    folder.file(outer + "/" + inner + "---z");
    EXPECT_EQ(open(), (Shown { outer }));
    EXPECT_EQ(openSubmenu(outer), (Shown { inner }));
    desktop.menus.choose(inner);
    ASSERT_EQ(desktop.workspace.opened.size(), 1u);
    EXPECT_EQ(desktop.workspace.opened.front().path(), folder.url().path() + "/" + outer + "/" + inner + "---z");
    open();
    desktop.menus.openSubmenu(outer);
    desktop.menus.highlight(inner);
    desktop.menus.press("r");
    EXPECT_EQ(desktop.workspace.revealed, (FakeWorkspace::Revealed { desktop.workspace.opened }));
}

TEST_F(FilledMenuTest, AFolderEntryCanBeRevealed)
{
    folder.folder("a");
    open();
    desktop.menus.highlight("a");
    EXPECT_TRUE(desktop.menus.press("r"));
    EXPECT_EQ(desktop.workspace.revealed, (FakeWorkspace::Revealed { { folder / "a" } }));
}

TEST_F(FilledMenuTest, AKeyOnThePlaceholderDoesNothing)
{
    open();
    desktop.menus.highlight("(Empty — drag items into this folder)");
    desktop.finder.questions.clear();
    EXPECT_TRUE(desktop.menus.press("i"));
    EXPECT_TRUE(desktop.menus.press("r"));
    EXPECT_TRUE(desktop.menus.isOpen());
    EXPECT_TRUE(desktop.finder.questions.empty());
    EXPECT_TRUE(desktop.workspace.revealed.empty());
}

TEST_F(FilledMenuTest, AMenuIsReleasedWithAllBelowItWhenItCloses)
{
    folder.folder("a/b");
    std::vector<std::weak_ptr<Menu>> watched;
    open();
    watched.push_back(desktop.menus.menu());
    desktop.menus.openSubmenu("a");
    watched.push_back(desktop.menus.menu());
    desktop.menus.openSubmenu("b");
    watched.push_back(desktop.menus.menu());
    desktop.menus.cancelTracking();
    for (auto const& menu : watched)
        EXPECT_TRUE(menu.expired());
}

TEST_F(FilledMenuTest, ARefillReleasesTheSubmenusOfTheLastFilling)
{
    folder.folder("a");
    open();
    auto const root = desktop.menus.menu();
    std::weak_ptr<Menu> const submenu = root->items().front()->submenu();
    root->menuNeedsUpdate(*root);
    EXPECT_TRUE(submenu.expired());
}

TEST_F(FilledMenuTest, TheRefreshOfAMenuThatIsGoneDoesNothing)
{
    folder.file("a");
    auto menu = MenuBuilder::buildItemsMenu("", folder.url(), std::nullopt);
    auto const refresh = menu->refresh;
    menu.reset();
    refresh();
    EXPECT_TRUE(desktop.fileManager.listed.empty());
    EXPECT_TRUE(desktop.finder.questions.empty());
}

TEST_F(FilledMenuTest, ALaterRefreshReplacesTheFirst)
{
    auto const menu = MenuBuilder::buildItemsMenu("", folder.url(), std::nullopt);
    menu->refresh = {};
    desktop.menus.popUp(menu, nullptr);
    EXPECT_EQ(desktop.menus.shown(), Shown {});
}

TEST_F(FilledMenuTest, AChosenEntrysMenuLivesUntilTheActionHasReturned)
{
    folder.file("a");
    open();
    std::weak_ptr<Menu> const menu = desktop.menus.menu();
    bool lived = false;
    desktop.workspace.whenAsked = [&] { lived = !menu.expired(); };
    desktop.menus.choose("a");
    EXPECT_TRUE(lived);
    EXPECT_TRUE(menu.expired());
}

TEST_F(FilledMenuTest, ThousandsOfEntriesAreShown)
{
    for (int number = 0; number < 3000; ++number)
        folder.file("n" + std::to_string(number));
    auto const shown = open();
    ASSERT_EQ(shown.size(), 3000u);
    for (int number = 0; number < 3000; ++number)
        EXPECT_EQ(shown[static_cast<std::size_t>(number)], "n" + std::to_string(number));
}

}
}
