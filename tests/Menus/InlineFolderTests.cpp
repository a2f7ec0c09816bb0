#include "Fakes/DiskTest.h"
#include "Menus/MWMenu.h"
#include "Menus/MenuBuilder.h"
#include "Models/ItemsFolderScanner.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

using Shown = std::vector<std::string>;
constexpr auto emptyEntry = "[(Empty — drag items into this folder)]";

class InlineFolderTest : public DiskTest {
protected:
    Shown open(FileURL const& of)
    {
        desktop.menus.popUp(MenuBuilder::buildItemsMenu("", of, std::nullopt), nullptr);
        return desktop.menus.shown();
    }
    Shown open() { return open(folder.url()); }
};

TEST_F(InlineFolderTest, ContentsStandInThePlaceOfTheFolder)
{
    folder.file("a");
    folder.folder("b---i");
    folder.file("b---i/y");
    folder.file("b---i/x");
    folder.file("c");
    EXPECT_EQ(open(), (Shown { "a", "x", "y", "c" }));
}

TEST_F(InlineFolderTest, AnInlineFolderInsideAnotherIsFlattenedToo)
{
    folder.folder("b---i/m---i");
    folder.file("b---i/m---i/deep");
    folder.file("b---i/z");
    folder.file("a");
    EXPECT_EQ(open(), (Shown { "a", "deep", "z" }));
}

TEST_F(InlineFolderTest, AnAliasToAFolderIsInlined)
{
    TemporaryFolder const elsewhere;
    elsewhere.file("there");
    folder.link("b---i", elsewhere.url().path());
    EXPECT_EQ(open(), (Shown { "there" }));
}

TEST_F(InlineFolderTest, TheCodeCountsBeforeTheOneAgainstSubmenus)
{
    folder.folder("b---X---i");
    folder.file("b---X---i/x");
    EXPECT_EQ(open(), (Shown { "x" }));
}

TEST_F(InlineFolderTest, OnlyFoldersAreInlined)
{
    folder.file("file---i");
    folder.folder("Mail.app---i");
    folder.folder("Mail---i.app");
    folder.folder("templates---C---i");
    folder.folder("Apps---a---i");
    folder.file("templates---C---i/x");
    EXPECT_EQ(open(), (Shown { "Apps", "file", "Mail---i", "templates" }));
}

TEST_F(InlineFolderTest, TheSituationIsAskedForOnce)
{
    folder.folder("b---i/y---i");
    folder.file("b---i/x---f");
    desktop.finder.selectTwoFiles();
    EXPECT_EQ(open(), (Shown { "x" }));
    EXPECT_EQ(desktop.finder.timesAsked(FakeFinder::selectionText), 1u);
}

TEST_F(InlineFolderTest, EntriesAreChosenAndOpenSubmenusAsOthers)
{
    folder.folder("b---i/sub");
    folder.file("b---i/sub/inside");
    folder.file("b---i/x");
    open();
    desktop.menus.openSubmenu("sub");
    EXPECT_EQ(desktop.menus.shown(), (Shown { "inside" }));
    open();
    desktop.menus.choose("x");
    EXPECT_EQ(desktop.workspace.opened, (std::vector { folder / "b---i/x" }));
}

TEST_F(InlineFolderTest, EntriesKeepTheCopyDestinationOfTheMenu)
{
    folder.folder("b---i/sub");
    auto const menu = MenuBuilder::buildItemsMenu("", folder.url(), FileURL("/destination"));
    desktop.menus.popUp(menu, nullptr);
    desktop.menus.openSubmenu("sub");
    EXPECT_EQ(std::dynamic_pointer_cast<MWMenu>(desktop.menus.menu())->copyDestination, FileURL("/destination"));
}

TEST_F(InlineFolderTest, AnOrderFileInsideCountsInside)
{
    folder.folder("b---i");
    for (auto const* name : { "x", "y", "z" })
        folder.file(std::string("b---i/") + name);
    folder.file(
        "b---i/.mw-info.plist", "<plist><array><string>z</string><string>x</string><string>y</string></array></plist>");
    folder.file("a");
    EXPECT_EQ(open(), (Shown { "a", "z", "x", "y" }));
}

TEST_F(InlineFolderTest, AMenuOfAnEmptyInlineFolderShowsOnePlaceholder)
{
    folder.folder("b---i");
    EXPECT_EQ(open(), Shown { emptyEntry });
    folder.folder("b---i/m---i");
    EXPECT_EQ(open(), Shown { emptyEntry });
    desktop.defaults.set("ignoreEmptyItemsFolder", true);
    EXPECT_EQ(open(), Shown {});
}

TEST_F(InlineFolderTest, AnEmptyInlineFolderAfterOtherEntriesAddsNothing)
{
    folder.file("a");
    folder.folder("b---i");
    EXPECT_EQ(open(), (Shown { "a" }));
}

TEST_F(InlineFolderTest, AnEmptyInlineFolderBeforeAllOtherEntriesShowsThePlaceholder)
{
    folder.folder("a---i");
    folder.file("b");
    EXPECT_EQ(open(), (Shown { emptyEntry, "b" }));
}

TEST_F(InlineFolderTest, AnAliasToTheMenusOwnFolderAddsNothing)
{
    folder.file("a");
    folder.link("self---i", folder.url().path());
    EXPECT_EQ(open(), (Shown { "a" }));
}

TEST_F(InlineFolderTest, AnAliasToItsOwnInlineFolderAddsNothing)
{
    folder.folder("b---i");
    folder.file("b---i/x");
    folder.link("b---i/self---i", (folder / "b---i").path());
    EXPECT_EQ(open(), (Shown { "x" }));
}

TEST_F(InlineFolderTest, AnAliasToTheParentAddsNothing)
{
    folder.file("a");
    folder.folder("b---i/c---i");
    folder.file("b---i/c---i/x");
    folder.link("b---i/c---i/up---i", "..");
    folder.link("b---i/c---i/top---i", "../..");
    EXPECT_EQ(open(), (Shown { "a", "x" }));
}

TEST_F(InlineFolderTest, TwoFoldersThatInlineEachOtherEnd)
{
    TemporaryFolder const one;
    TemporaryFolder const two;
    one.file("of one");
    two.file("of two");
    one.link("two---i", two.url().path());
    two.link("one---i", one.url().path());
    folder.link("b---i", one.url().path());
    EXPECT_EQ(open(), (Shown { "of one", "of two" }));
}

TEST_F(InlineFolderTest, OneFolderInTwoPlacesStandsInBoth)
{
    TemporaryFolder const elsewhere;
    elsewhere.file("there");
    folder.link("a---i", elsewhere.url().path());
    folder.link("b---i", elsewhere.url().path());
    EXPECT_EQ(open(), (Shown { "there", "there" }));
}

TEST_F(InlineFolderTest, ALoopOfNothingElseShowsThePlaceholder)
{
    folder.link("self---i", ".");
    EXPECT_EQ(open(), Shown { emptyEntry });
}

TEST_F(InlineFolderTest, AMenuOpenedThroughAnAliasKnowsItsOwnFolder)
{
    folder.folder("real");
    folder.file("real/a");
    folder.link("real/back---i", "../alias");
    folder.link("alias", "real");
    EXPECT_EQ(open(folder / "alias"), (Shown { "a" }));
}

TEST_F(InlineFolderTest, NodesFromElsewhereEndTheirLoopsToo)
{
    folder.folder("b---i");
    folder.file("b---i/x");
    folder.link("b---i/self---i", ".");
    auto const menu = MWMenu::make("");
    MenuContext const context;
    MenuBuilder::populate(*menu, ItemsFolderScanner::children(folder.url(), context, true), context);
    desktop.menus.popUp(menu, nullptr);
    EXPECT_EQ(desktop.menus.shown(), (Shown { "x" }));
}

TEST_F(InlineFolderTest, FiveHundredInlineFoldersInsideEachOtherAreFlattened)
{
    std::string path = "f---i";
    for (int depth = 1; depth < 500; ++depth)
        path += "/f---i";
    folder.folder(path);
    folder.file(path + "/deep");
    EXPECT_EQ(open(), (Shown { "deep" }));
}

TEST_F(InlineFolderTest, AFolderThatCannotBeReadAddsNothing)
{
    folder.file("a");
    folder.folder("b---i");
    auto const menu = MWMenu::make("");
    MenuContext const context;
    auto const nodes = ItemsFolderScanner::children(folder.url(), context, true);
    folder.remove("b---i");
    MenuBuilder::populate(*menu, nodes, context);
    desktop.menus.popUp(menu, nullptr);
    EXPECT_EQ(desktop.menus.shown(), (Shown { "a" }));
}

}
}
