#include "Support/FinderSyncTest.h"

#include "Models/ItemsFolderScanner.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

using Folders = std::vector<TopLevelFolder>;

class TopLevelFoldersTest : public DiskTest {
protected:
    Folders found() const { return FinderSyncBridge::topLevelFolders(menu, MenuContext {}); }

    FileURL const menu = folder.folder("menu");
};

TEST_F(TopLevelFoldersTest, FoldersStandWithTheirTitlesInMenuOrder)
{
    folder.folder("menu/02)Later");
    folder.folder("menu/01)Sooner---f");
    folder.folder("menu/01)Mail");
    folder.folder("menu/Plain");
    EXPECT_EQ(found(),
        (Folders { { "Mail", folder / "menu/01)Mail" }, { "Later", folder / "menu/02)Later" },
            { "Plain", folder / "menu/Plain" } }));
}

TEST_F(TopLevelFoldersTest, AnEmptyOrMissingFolderHasNone)
{
    EXPECT_TRUE(found().empty());
    EXPECT_TRUE(FinderSyncBridge::topLevelFolders(folder / "missing", MenuContext {}).empty());
    desktop.fileManager.unreadable = { menu };
    folder.folder("menu/A");
    EXPECT_TRUE(found().empty());
}

TEST_F(TopLevelFoldersTest, FilesAndTemplatesAndDividersAndGeneratedSubmenusAreNoDestinations)
{
    folder.file("menu/file");
    folder.folder("menu/Mail.app");
    folder.folder("menu/templates---C/inner");
    folder.folder("menu/templates---C---i/inner");
    folder.folder("menu/line----");
    folder.folder("menu/Apps---a");
    folder.folder("menu/Processes---p");
    folder.folder("menu/Recent---R");
    folder.folder("menu/Panes---n");
    folder.link("menu/dangling", "nowhere");
    folder.folder("menu/.hidden folder");
    EXPECT_TRUE(found().empty());
    // They are entries of the menu, but for the hidden one.
    EXPECT_EQ(ItemsFolderScanner::children(menu, MenuContext {}, true).size(), 10u);
}

TEST_F(TopLevelFoldersTest, AFolderWithoutSubmenuIsADestinationAllTheSame)
{
    folder.folder("menu/A---X");
    EXPECT_EQ(found(), (Folders { { "A", folder / "menu/A---X" } }));
}

TEST_F(TopLevelFoldersTest, AnInlineFolderGivesItsFoldersInItsPlaceAndNotItself)
{
    folder.folder("menu/a");
    folder.folder("menu/b---i/x");
    folder.folder("menu/b---i/w");
    folder.file("menu/b---i/file");
    folder.folder("menu/c");
    EXPECT_EQ(found(),
        (Folders { { "a", folder / "menu/a" }, { "w", folder / "menu/b---i/w" }, { "x", folder / "menu/b---i/x" },
            { "c", folder / "menu/c" } }));
}

TEST_F(TopLevelFoldersTest, InlineFoldersAreFlattenedAtEveryDepth)
{
    std::string path = "menu";
    for (int depth = 0; depth < 50; ++depth) {
        path += "/f---i";
        folder.folder(path + "/at " + std::to_string(depth));
    }
    auto const folders = found();
    ASSERT_EQ(folders.size(), 50u);
    EXPECT_EQ(folders.front().name, "at 0");
    EXPECT_EQ(folders.back(), (TopLevelFolder { "at 49", folder / (path + "/at 49") }));
}

TEST_F(TopLevelFoldersTest, AnEmptyInlineFolderGivesNothing)
{
    folder.folder("menu/b---i");
    EXPECT_TRUE(found().empty());
}

TEST_F(TopLevelFoldersTest, InlineFoldersThatLeadBackEnd)
{
    folder.folder("menu/a");
    folder.folder("menu/b---i/in b");
    folder.link("menu/b---i/self---i", (folder / "menu/b---i").path());
    folder.link("menu/b---i/up---i", menu.path());
    EXPECT_EQ(found(), (Folders { { "a", folder / "menu/a" }, { "in b", folder / "menu/b---i/in b" } }));
}

TEST_F(TopLevelFoldersTest, AFolderThatIsInlinedTwiceBesideItselfStandsTwice)
{
    TemporaryFolder const elsewhere;
    elsewhere.folder("A");
    folder.link("menu/one---i", elsewhere.url().path());
    folder.link("menu/two---i", elsewhere.url().path());
    EXPECT_EQ(found(), (Folders { { "A", folder / "menu/one---i/A" }, { "A", folder / "menu/two---i/A" } }));
}

TEST_F(TopLevelFoldersTest, AnAliasStandsForTheFolderThatItLeadsTo)
{
    TemporaryFolder const elsewhere;
    auto const target = elsewhere.folder("target/deep");
    folder.link("menu/alias", target.path());
    folder.link("menu/chain", (folder / "menu/alias").path());
    EXPECT_EQ(found(), (Folders { { "alias", target }, { "chain", target } }));
}

TEST_F(TopLevelFoldersTest, AFolderBelowALinkKeepsItsOwnLocation)
{
    folder.folder("menu/A");
    auto const link = folder.link("link", menu.path());
    EXPECT_EQ(FinderSyncBridge::topLevelFolders(link, MenuContext {}), (Folders { { "A", folder / "link/A" } }));
}

TEST_F(TopLevelFoldersTest, WhatCannotBeResolvedKeepsItsOwnLocation)
{
    auto const gone = folder / "menu/gone";
    ResourceValues values;
    values.isDirectory = true;
    values.isAliasFile = false;
    desktop.fileManager.listings[menu] = { { gone, values } };
    EXPECT_EQ(found(), (Folders { { "gone", gone } }));
}

TEST_F(TopLevelFoldersTest, TheDesktopIsADestinationUnderItsTitle)
{
    auto const desktopFolder = folder.folder("My Desktop");
    desktop.fileManager.standardDirectories[StandardDirectory::desktop] = { desktopFolder, folder / "another" };
    folder.file("menu/a---d");
    folder.folder("menu/b");
    EXPECT_EQ(found(), (Folders { { "a", desktopFolder }, { "b", folder / "menu/b" } }));
}

TEST_F(TopLevelFoldersTest, ADesktopWithoutTitleIsCalledDesktop)
{
    auto const desktopFolder = folder.folder("My Desktop");
    desktop.fileManager.standardDirectories[StandardDirectory::desktop] = { desktopFolder };
    folder.file("menu/---d");
    EXPECT_EQ(found(), (Folders { { "Desktop", desktopFolder } }));
}

TEST_F(TopLevelFoldersTest, WithoutADesktopFolderItsEntryIsSkipped)
{
    desktop.fileManager.standardDirectories[StandardDirectory::desktop] = {};
    folder.file("menu/a---d");
    folder.folder("menu/b");
    EXPECT_EQ(found(), (Folders { { "b", folder / "menu/b" } }));
}

TEST_F(TopLevelFoldersTest, EntriesAreThoseOfTheGivenSituation)
{
    folder.folder("menu/with---f");
    folder.folder("menu/without---N");
    EXPECT_EQ(found(), (Folders { { "without", folder / "menu/without---N" } }));
    MenuContext context;
    context.finderSelection = { FileURL("/a") };
    EXPECT_EQ(FinderSyncBridge::topLevelFolders(menu, context), (Folders { { "with", folder / "menu/with---f" } }));
}

TEST_F(TopLevelFoldersTest, TheSituationHoldsInsideInlineFoldersToo)
{
    folder.folder("menu/b---i/with---f");
    folder.folder("menu/b---i/without---N");
    EXPECT_EQ(found(), (Folders { { "without", folder / "menu/b---i/without---N" } }));
}

TEST_F(TopLevelFoldersTest, InlineFoldersThatLeadToEachOtherInManyWaysEnd)
{
    for (int number = 0; number < 12; ++number)
        folder.folder("menu/" + std::to_string(number) + "---i");
    for (int from = 0; from < 12; ++from) {
        for (int to = 0; to < 12; ++to)
            folder.link("menu/" + std::to_string(from) + "---i/" + std::to_string(to) + "---i",
                "../" + std::to_string(to) + "---i");
    }
    found();
    EXPECT_EQ(desktop.fileManager.listed.size(), 1000u);
}

}
}
