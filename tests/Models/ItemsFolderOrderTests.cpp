#include "Models/ScannerTest.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

class ItemsFolderOrderTest : public ScannerTest { };

TEST_F(ItemsFolderOrderTest, AlphabeticalComparesWithoutCaseAndNumbersByValue)
{
    listFiles({ "item 10", "banana", "Item 9", "Cherry", "apple" });
    EXPECT_EQ(titles(), (Titles { "apple", "banana", "Cherry", "Item 9", "item 10" }));
}

TEST_F(ItemsFolderOrderTest, AlphabeticalSortsPrefixedEntriesByTheirPrefixAlone)
{
    listFiles({ "Apple", "02)aaa", "zz)aaa", "01)zzz", "Bee", "10)mmm" });
    EXPECT_EQ(titles(), (Titles { "zzz", "aaa", "mmm", "Apple", "Bee", "aaa" }));
}

TEST_F(ItemsFolderOrderTest, EntriesOfOnePrefixKeepTheListingOrder)
{
    listFiles({ "01)c", "01)a", "1 )x", "01)b", "00)d" });
    EXPECT_EQ(titles(), (Titles { "d", "c", "a", "b", "x" }));
}

TEST_F(ItemsFolderOrderTest, AlphabeticalTiesKeepTheListingOrder)
{
    listFiles({ "same---z", "SAME---X", "Same", "a" });
    EXPECT_EQ(titles(), (Titles { "a", "same", "SAME", "Same" }));
}

TEST_F(ItemsFolderOrderTest, TheKeyIsTheTitleWithoutCodesAndHiddenExtension)
{
    listFiles({ "b.app", "b b", "bc---z", "b----" });
    EXPECT_EQ(titles(), (Titles { "", "b", "b b", "bc" }));
}

TEST_F(ItemsFolderOrderTest, AFolderWithoutAnOrderFileIsSortedAlphabeticallyByDefault)
{
    for (auto const* name : { "b", "a", "d", "c" })
        folder.file(name);
    EXPECT_EQ(titles(), (Titles { "a", "b", "c", "d" }));
    sortBy("no such mode");
    EXPECT_EQ(titles(), (Titles { "a", "b", "c", "d" }));
}

TEST_F(ItemsFolderOrderTest, ByKindApplicationsComeFirstThenFoldersThenDocuments)
{
    sortBy("kindThenAlphabetical");
    folder.folder("Zebra.app");
    folder.folder("Mail.app");
    folder.folder("folder");
    folder.folder("Notes.rtfd");
    folder.file("apps---a");
    folder.file("zzz---p");
    folder.file("line----");
    folder.file("a.txt");
    folder.file("c.txt");
    folder.folder("b templates---C");
    EXPECT_EQ(titles(),
        (Titles { "Mail", "Zebra", "", "apps", "folder", "Notes.rtfd", "zzz", "a.txt", "b templates", "c.txt" }));
}

TEST_F(ItemsFolderOrderTest, ByKindThePrefixIsIgnored)
{
    sortBy("kindThenAlphabetical");
    listFiles({ "01)b", "a", "02)a", "zz)0" });
    EXPECT_EQ(titles(), (Titles { "0", "a", "a", "b" }));
}

TEST_F(ItemsFolderOrderTest, ByKindTiesKeepTheListingOrder)
{
    sortBy("kindThenAlphabetical");
    listFiles({ "same---z", "01)SAME", "Same" });
    EXPECT_EQ(titles(), (Titles { "same", "SAME", "Same" }));
}

TEST_F(ItemsFolderOrderTest, TheSettingIsReadAtEachScan)
{
    folder.file("a.txt");
    folder.folder("b");
    EXPECT_EQ(titles(), (Titles { "a.txt", "b" }));
    sortBy("kindThenAlphabetical");
    EXPECT_EQ(titles(), (Titles { "b", "a.txt" }));
}

class KindRankTest : public ScannerTest {
protected:
    int rankOf(MenuNodeKind kind) const
    {
        return ItemsFolderScanner::kindRank({ std::move(kind), "title", {}, std::nullopt });
    }
};

TEST_F(KindRankTest, ApplicationsAreFirstWhateverTheirKind)
{
    auto const application = folder.folder("Open.app");
    EXPECT_EQ(rankOf(MenuNodeKind::file(application)), 0);
    EXPECT_EQ(rankOf(MenuNodeKind::folder(application)), 0);
    EXPECT_EQ(rankOf(MenuNodeKind::copyTemplateFolder(application)), 0);
}

TEST_F(KindRankTest, FoldersAndEntriesWithoutAFileFollow)
{
    EXPECT_EQ(rankOf(MenuNodeKind::folder(folder.folder("a"))), 1);
    EXPECT_EQ(rankOf(MenuNodeKind::folder(folder.folder("Notes.rtfd"))), 1);
    for (auto const& kind : { MenuNodeKind::divider(), MenuNodeKind::allAppsSubmenu(), MenuNodeKind::desktopSubmenu(),
             MenuNodeKind::processesSubmenu(), MenuNodeKind::prefPanesSubmenu(), MenuNodeKind::recentItemsSubmenu() })
        EXPECT_EQ(rankOf(kind), 1);
}

TEST_F(KindRankTest, OtherFilesAndTemplateFoldersAreLast)
{
    EXPECT_EQ(rankOf(MenuNodeKind::file(folder.file("a.txt"))), 2);
    EXPECT_EQ(rankOf(MenuNodeKind::copyTemplateFolder(folder.folder("b"))), 2);
    EXPECT_EQ(rankOf(MenuNodeKind::copyTemplateFolder(folder.file("c"))), 2);
    EXPECT_EQ(rankOf(MenuNodeKind::file(folder / "missing")), 2);
}

}
}
