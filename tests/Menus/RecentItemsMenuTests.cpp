#include "Fakes/DiskTest.h"
#include "Menus/RecentItemsMenuBuilder.h"
#include "Models/MenuNode.h"

#include <any>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

using Shown = std::vector<std::string>;
constexpr auto emptyEntry = "[(Empty — drag items into this folder)]";

class RecentItemsTest : public DiskTest {
protected:
    RecentItemsTest()
    {
        for (auto const& [directory, name] : folders) {
            folder.folder(name);
            desktop.fileManager.standardDirectories[directory] = { folder / name };
        }
    }

    void file(std::string const& name, long modified)
    {
        folder.file(name);
        folder.setModified(name, modified);
    }

    Shown open()
    {
        desktop.menus.popUp(RecentItemsMenuBuilder::build(), nullptr);
        return desktop.menus.shown();
    }

    static inline std::vector<std::pair<StandardDirectory, std::string>> const folders { { StandardDirectory::desktop,
                                                                                             "Desktop" },
        { StandardDirectory::documents, "Documents" }, { StandardDirectory::downloads, "Downloads" } };
};

TEST_F(RecentItemsTest, ItIsTitledAndMadeEmpty)
{
    auto const menu = RecentItemsMenuBuilder::build();
    EXPECT_EQ(menu->title, "Recent Items");
    EXPECT_TRUE(menu->items().empty());
    EXPECT_TRUE(desktop.fileManager.listed.empty());
}

TEST_F(RecentItemsTest, FilesOfTheThreeFoldersComeNewestFirst)
{
    file("Desktop/second", 2000);
    file("Documents/first", 3000);
    file("Downloads/third", 1000);
    EXPECT_EQ(open(), (Shown { "first", "second", "third" }));
    EXPECT_EQ(desktop.fileManager.hiddenAskedFor, std::vector(3, HiddenItems::skipped));
}

TEST_F(RecentItemsTest, EqualDatesKeepTheOrderOfTheFolders)
{
    file("Downloads/a", 1000);
    file("Documents/b", 1000);
    file("Desktop/c", 1000);
    EXPECT_EQ(open(), (Shown { "c", "b", "a" }));
}

TEST_F(RecentItemsTest, EqualDatesKeepTheListingsOrder)
{
    std::vector<ListedItem> listing;
    for (auto const* name : { "b", "c", "a" }) {
        ResourceValues values;
        values.isDirectory = false;
        values.contentModificationDate = FileTime(std::chrono::seconds(1));
        listing.push_back({ folder / ("Desktop/" + std::string(name)), values });
    }
    desktop.fileManager.listings[folder / "Desktop"] = listing;
    EXPECT_EQ(open(), (Shown { "b", "c", "a" }));
}

TEST_F(RecentItemsTest, FilesInSubfoldersAreNeverOffered)
{
    folder.folder("Documents/Sub");
    file("Documents/Sub/newest", 9000);
    file("Documents/old", 1);
    EXPECT_EQ(open(), (Shown { "old" }));
}

TEST_F(RecentItemsTest, AnApplicationBundleIsADirectoryAndNotOffered)
{
    folder.folder("Desktop/Tool.app");
    file("Desktop/note", 1);
    EXPECT_EQ(open(), (Shown { "note" }));
}

TEST_F(RecentItemsTest, HiddenFilesAreNotOffered)
{
    file("Desktop/.secret", 9000);
    file("Desktop/note", 1);
    EXPECT_EQ(open(), (Shown { "note" }));
}

TEST_F(RecentItemsTest, OfTwentyFilesTheFifteenNewestAreShown)
{
    Shown expected;
    for (int i = 0; i < 20; ++i)
        file(folders[static_cast<std::size_t>(i) % 3].second + "/file " + std::to_string(i), 1000 + i);
    for (int i = 19; i >= 5; --i)
        expected.push_back("file " + std::to_string(i));
    EXPECT_EQ(open(), expected);
    EXPECT_EQ(RecentItemsMenuBuilder::recentFiles(0).size(), 0u);
    EXPECT_EQ(RecentItemsMenuBuilder::recentFiles(3).size(), 3u);
    EXPECT_EQ(RecentItemsMenuBuilder::recentFiles(100).size(), 20u);
}

TEST_F(RecentItemsTest, NoneShowsTheEntryOfAnEmptyFolderUnlessTheUserDoesNotWantIt)
{
    EXPECT_EQ(open(), Shown { emptyEntry });
    desktop.defaults.set("ignoreEmptyItemsFolder", true);
    EXPECT_EQ(open(), Shown {});
}

TEST_F(RecentItemsTest, TitlesAreWholeFileNamesWithoutAnyCodes)
{
    file("Desktop/Report---z.pdf", 4000);
    file("Desktop/01)Tool.app", 3000);
    file("Desktop/script.scpt", 2000);
    file("Desktop/x !none-!!!", 1000);
    desktop.defaults.set("tossDotScptExtension", true);
    EXPECT_EQ(open(), (Shown { "Report---z.pdf", "01)Tool.app", "script.scpt", "x !none-!!!" }));
    auto const item = desktop.menus.item("Report---z.pdf");
    auto const node = std::any_cast<MenuNode>(item->representedObject);
    EXPECT_EQ(node.codes, SuffixCodes {});
    EXPECT_FALSE(node.appConditional);
}

TEST_F(RecentItemsTest, AFileWithoutADateSortsAfterEveryDatedFile)
{
    file("Desktop/undated", 9000);
    file("Downloads/before 1970", -5000);
    desktop.fileManager.values[folder / "Desktop/undated"].isDirectory = false;
    EXPECT_EQ(open(), (Shown { "before 1970", "undated" }));
}

TEST_F(RecentItemsTest, AnItemThatCannotBeReadAtAllCountsAsAFileWithoutADate)
{
    folder.folder("Desktop/unreadable");
    file("Desktop/note", 1);
    desktop.fileManager.values[folder / "Desktop/unreadable"] = {};
    EXPECT_EQ(open(), (Shown { "note", "unreadable" }));
}

TEST_F(RecentItemsTest, AFolderThatIsMissingUnreadableOrUnknownAddsNothing)
{
    file("Desktop/note", 1);
    file("Documents/locked", 2);
    file("Downloads/unknown", 3);
    desktop.fileManager.unreadable.insert(folder / "Documents");
    desktop.fileManager.standardDirectories[StandardDirectory::downloads] = {};
    EXPECT_EQ(open(), (Shown { "note" }));
    folder.remove("Desktop/note");
    folder.remove("Desktop");
    EXPECT_EQ(open(), Shown { emptyEntry });
    EXPECT_TRUE(desktop.log.lines().empty());
}

TEST_F(RecentItemsTest, OnlyTheFirstLocationOfAFolderCounts)
{
    folder.folder("Second");
    file("Second/note", 1);
    desktop.fileManager.standardDirectories[StandardDirectory::desktop] = { folder / "Desktop", folder / "Second" };
    EXPECT_EQ(open(), Shown { emptyEntry });
}

TEST_F(RecentItemsTest, EachOpeningReadsTheFoldersAnew)
{
    auto const menu = RecentItemsMenuBuilder::build();
    desktop.menus.popUp(menu, nullptr);
    file("Downloads/late", 1);
    desktop.menus.popUp(menu, nullptr);
    EXPECT_EQ(desktop.menus.shown(), (Shown { "late" }));
}

TEST_F(RecentItemsTest, RefreshingDoesNothingOnceTheMenuIsGone)
{
    auto menu = RecentItemsMenuBuilder::build();
    auto const refresh = menu->refresh;
    menu.reset();
    refresh();
    EXPECT_TRUE(desktop.fileManager.listed.empty());
}

TEST_F(RecentItemsTest, ChoosingOneOpensTheFile)
{
    file("Downloads/paper.pdf", 1);
    open();
    desktop.menus.choose("paper.pdf");
    EXPECT_EQ(desktop.workspace.opened, std::vector { folder / "Downloads/paper.pdf" });
}

}
}
