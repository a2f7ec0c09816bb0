#include "Models/ScannerTest.h"

#include <algorithm>
#include <chrono>
#include <string>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

class ItemsFolderDateOrderTest : public ScannerTest {
protected:
    ItemsFolderDateOrderTest() { sortBy("dateModified"); }

    void fileOfDate(std::string const& name, long seconds) const
    {
        folder.file(name);
        folder.setModified(name, seconds);
    }

    /// Adds a file of this date, or of no date, to what the folder lists.
    void listDated(std::string const& name, std::optional<std::int64_t> nanoseconds)
    {
        ListedItem item { folder / name, {} };
        item.values.isDirectory = false;
        item.values.isAliasFile = false;
        if (nanoseconds)
            item.values.contentModificationDate = FileTime(std::chrono::nanoseconds(*nanoseconds));
        desktop.fileManager.listings[folder.url()].push_back(item);
        desktop.fileManager.values[item.url] = item.values;
    }
};

TEST_F(ItemsFolderDateOrderTest, TheNewestComesFirst)
{
    fileOfDate("a", 1000);
    fileOfDate("b", 3000);
    fileOfDate("c", -5);
    fileOfDate("d", 2000);
    EXPECT_EQ(titles(), (Titles { "b", "d", "a", "c" }));
}

TEST_F(ItemsFolderDateOrderTest, FoldersAndFilesAreMixedAndPrefixesIgnored)
{
    fileOfDate("01)old", 1000);
    folder.folder("new");
    folder.setModified("new", 3000);
    fileOfDate("middle", 2000);
    EXPECT_EQ(titles(), (Titles { "new", "middle", "old" }));
}

TEST_F(ItemsFolderDateOrderTest, AnAliasHasItsOwnDate)
{
    TemporaryFolder const elsewhere;
    elsewhere.file("target");
    elsewhere.setModified("target", 9000);
    folder.link("alias", (elsewhere / "target").path());
    folder.setModified("alias", 1000);
    fileOfDate("file", 2000);
    EXPECT_EQ(titles(), (Titles { "file", "alias" }));
}

TEST_F(ItemsFolderDateOrderTest, NanosecondsTellDatesApart)
{
    listDated("a", 1'000'000'000);
    listDated("b", 1'000'000'001);
    EXPECT_EQ(titles(), (Titles { "b", "a" }));
}

TEST_F(ItemsFolderDateOrderTest, EqualDatesKeepTheListingOrderWhateverTheNames)
{
    for (auto const* name : { "c", "a", "d", "b" })
        listDated(name, 1000);
    EXPECT_EQ(titles(), (Titles { "c", "a", "d", "b" }));
}

TEST_F(ItemsFolderDateOrderTest, ADateThatCannotBeReadIsTheOldest)
{
    listDated("unknown", std::nullopt);
    listDated("old", -4'000'000'000'000'000'000);
    listDated("also unknown", std::nullopt);
    EXPECT_EQ(titles(), (Titles { "old", "unknown", "also unknown" }));
}

TEST_F(ItemsFolderDateOrderTest, DatesThatTheListingDidNotReadAreAskedFor)
{
    fileOfDate("a", 1000);
    fileOfDate("b", 2000);
    for (auto const* name : { "a", "b" }) {
        ListedItem item { folder / name, {} };
        item.values.isDirectory = false;
        item.values.isAliasFile = false;
        desktop.fileManager.listings[folder.url()].push_back(item);
    }
    EXPECT_EQ(titles(), (Titles { "b", "a" }));
}

TEST_F(ItemsFolderDateOrderTest, AnEntryWithoutAFileTiesWithItsNeighbour)
{
    listDated("line----", 1000);
    listDated("b", 2000);
    EXPECT_EQ(titles(), (Titles { "", "b" }));
    desktop.fileManager.listings.clear();
    listDated("b", 1000);
    listDated("line----", 2000);
    EXPECT_EQ(titles(), (Titles { "b", "" }));
    desktop.fileManager.listings.clear();
    listDated("b", 1000);
    listDated("Apps---a", 2000);
    EXPECT_EQ(titles(), (Titles { "b", "Apps" }));
}

TEST_F(ItemsFolderDateOrderTest, AmongManyEntriesWithoutAFileNothingIsLost)
{
    Titles expected;
    for (int number = 0; number < 1000; ++number) {
        auto name = std::to_string(number);
        listDated(number % 3 == 0 ? name + "---a" : name, number * 7919 % 1000);
        expected.push_back(std::move(name));
    }
    auto found = titles();
    std::sort(found.begin(), found.end());
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(found, expected);
}

}
}
