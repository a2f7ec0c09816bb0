#include "Support/FreeNameTest.h"

#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

/// So many names are taken that the folder is listed.
using ManyNamesTest = FreeNameTest;

TEST_F(ManyNamesTest, TheFirstGapIsFoundHoweverManyNamesAreTaken)
{
    auto const url = item("a.txt");
    takeUpTo(100);
    for (int const gap : { 2, 15, 16, 17, 18, 19, 50, 99, 100 }) {
        auto const name = "a " + std::to_string(gap) + ".txt";
        folder.remove("into/" + name);
        EXPECT_EQ(nameGiven(FinderBridge::copyItem, url), name);
    }
    EXPECT_EQ(nameGiven(FinderBridge::copyItem, url), "a 101.txt");
    folder.remove("into/a 40.txt");
    folder.remove("into/a 60.txt");
    EXPECT_EQ(nameGiven(FinderBridge::moveItem, url), "a 40.txt");
}

TEST_F(ManyNamesTest, AmongManyNamesDanglingLinksAndHiddenItemsCount)
{
    folder.file("into/.a.txt");
    for (int number = 2; number <= 40; ++number)
        folder.link("into/.a " + std::to_string(number) + ".txt", "nowhere");
    EXPECT_EQ(nameGiven(FinderBridge::copyItem, item(".a.txt")), ".a 41.txt");
}

TEST_F(ManyNamesTest, AmongManyNamesOnlyThoseOfTheRuleCount)
{
    takeUpTo(20);
    take({ "a 021.txt", "a 21", "a  21.txt", "a +21.txt", "a 21 .txt", "A 21.txt", "a 21.txt.txt", "a21.txt", "a 1.txt",
        "a .txt", "a 0.txt", "a -21.txt", "a 99999999999999999999.txt", "a 18446744073709551615.txt", "a 22.txt" });
    EXPECT_EQ(nameGiven(FinderBridge::copyItem, item("a.txt")), "a 21.txt");
    EXPECT_EQ(nameGiven(FinderBridge::copyItem, item("a.txt")), "a 23.txt");
}

TEST_F(ManyNamesTest, AmongManyNamesTheSuffixBelongsToTheName)
{
    takeUpTo(40);
    take({ "a alias.txt" });
    for (int number = 2; number <= 30; ++number)
        take({ "a alias " + std::to_string(number) + ".txt" });
    EXPECT_EQ(nameGiven(FinderBridge::aliasItem, item("a.txt")), "a alias 31.txt");
}

TEST_F(ManyNamesTest, AmongManyNamesOneWithoutAnExtensionIsFoundToo)
{
    take({ "README", "README 2.txt" });
    for (int number = 2; number <= 30; ++number)
        take({ "README " + std::to_string(number) });
    EXPECT_EQ(nameGiven(FinderBridge::copyItem, item("README")), "README 31");
}

TEST_F(ManyNamesTest, ManyNamesAreFoundInOneListing)
{
    takeUpTo(100);
    EXPECT_EQ(nameGiven(FinderBridge::copyItem, item("a.txt")), "a 101.txt");
    EXPECT_EQ(desktop.fileManager.listed, (std::vector { into }));
}

TEST_F(ManyNamesTest, AmongManyNamesThoseTakenInTheGapAreSkipped)
{
    takeUpTo(40);
    takeInTheGap(3);
    EXPECT_EQ(nameGiven(FinderBridge::copyItem, item("a.txt")), "a 44.txt");
}

TEST_F(ManyNamesTest, ANameThatIsFreedAfterTheListingIsNotReused)
{
    // Whatever another program does, nothing is replaced and the search ends.
    takeUpTo(40);
    desktop.fileTransfer.instead = [&](std::string const&) -> std::optional<Result<void>> {
        folder.remove("into/a 2.txt");
        desktop.fileTransfer.instead = {};
        return Result<void>(Error { ErrorKind::alreadyExists, "taken" });
    };
    EXPECT_EQ(nameGiven(FinderBridge::copyItem, item("a.txt")), "a 42.txt");
}

TEST_F(ManyNamesTest, WhereTheFolderCannotBeListedNamesAreAskedForOneByOne)
{
    takeUpTo(40);
    desktop.fileManager.unreadable.insert(into);
    EXPECT_EQ(nameGiven(FinderBridge::copyItem, item("a.txt")), "a 41.txt");
}

TEST_F(ManyNamesTest, AFewNamesNeedNoListing)
{
    takeUpTo(10);
    EXPECT_EQ(nameGiven(FinderBridge::copyItem, item("a.txt")), "a 11.txt");
    EXPECT_TRUE(desktop.fileManager.listed.empty());
}

}
}
