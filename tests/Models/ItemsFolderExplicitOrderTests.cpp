#include "Models/ScannerTest.h"
#include "Support/PropertyListBytes.h"
#include "Support/PropertyListSamples.h"

#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace marrowick {
namespace {

std::string xmlArray(std::vector<std::string> const& names)
{
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><array>";
    for (auto const& name : names)
        text += "<string>" + name + "</string>";
    return text + "</array></plist>\n";
}

class ItemsFolderExplicitOrderTest : public ScannerTest {
protected:
    void orderFile(std::string_view content) const { folder.file(".mw-info.plist", content); }

    /// With this order file the folder shows its listing order, unsorted.
    void expectIgnored(std::string_view content)
    {
        orderFile(content);
        expectUnsorted();
    }
    void expectUnsorted()
    {
        listFiles({ "C", "A", "D", "B" });
        EXPECT_EQ(titles(), (Titles { "C", "A", "D", "B" }));
    }
};

TEST_F(ItemsFolderExplicitOrderTest, ListedNamesComeFirstAndTheOthersInListingOrder)
{
    listFiles({ "D", "A", "C", "B" });
    orderFile(xmlArray({ "B", "A" }));
    for (auto const* mode : { "alphabetical", "kindThenAlphabetical", "dateModified" }) {
        sortBy(mode);
        EXPECT_EQ(titles(), (Titles { "B", "A", "D", "C" })) << mode;
    }
}

TEST_F(ItemsFolderExplicitOrderTest, ABinaryListIsRead)
{
    listFiles({ "D", "A", "C", "B" });
    orderFile(samples::bytesFromHex(samples::twoNames));
    EXPECT_EQ(titles(), (Titles { "B", "A", "D", "C" }));
}

TEST_F(ItemsFolderExplicitOrderTest, TheOrderFileItselfIsNoEntry)
{
    folder.file("A");
    orderFile(xmlArray({ ".mw-info.plist", "A" }));
    EXPECT_EQ(titles(), (Titles { "A" }));
}

TEST_F(ItemsFolderExplicitOrderTest, NamesAreThoseOnTheDisk)
{
    listFiles({ "A", "01)B.app---z", "C---f", "D" });
    context.finderSelection = { FileURL("/selected/one") };
    orderFile(xmlArray({ "C---f", "01)B.app---z", "A---z", "B" }));
    EXPECT_EQ(titles(), (Titles { "C", "B", "A", "D" }));
}

TEST_F(ItemsFolderExplicitOrderTest, NamesAreComparedByteByByte)
{
    std::string const composed = "\xC3\xA9";
    std::string const decomposed = "e\xCC\x81";
    listFiles({ "a", composed, decomposed, "A" });
    orderFile(xmlArray({ decomposed, "A" }));
    EXPECT_EQ(titles(), (Titles { decomposed, "A", "a", composed }));
}

TEST_F(ItemsFolderExplicitOrderTest, NamesThatAreNoTextStayUnlistedWithTheirBytes)
{
    listFiles({ "caf\xE9", "A" });
    orderFile(xmlArray({ "A" }));
    EXPECT_EQ(titles(), (Titles { "A", "caf\xE9" }));
}

TEST_F(ItemsFolderExplicitOrderTest, DividersAndPlaceholdersAreListedByTheirTitles)
{
    listFiles({ "A", "line----", "Apps---a", "second----", "Desk---d" });
    orderFile(xmlArray({ "Apps", "", "line----", "Desk---d" }));
    auto const nodes = scan();
    ASSERT_EQ(nodes.size(), 5u);
    EXPECT_EQ(nodes[0].kind, MenuNodeKind::allAppsSubmenu());
    EXPECT_EQ(nodes[1].kind, MenuNodeKind::divider());
    EXPECT_EQ(nodes[2].kind, MenuNodeKind::divider());
    EXPECT_EQ(nodes[3].displayName, "A");
    EXPECT_EQ(nodes[4].kind, MenuNodeKind::desktopSubmenu());
}

TEST_F(ItemsFolderExplicitOrderTest, NamesThatAreNotThereAreIgnored)
{
    listFiles({ "C", "B" });
    orderFile(xmlArray({ "Z", "B", "Y" }));
    EXPECT_EQ(titles(), (Titles { "B", "C" }));
}

TEST_F(ItemsFolderExplicitOrderTest, AnEmptyListLeavesTheListingOrder)
{
    expectIgnored(xmlArray({}));
}

TEST_F(ItemsFolderExplicitOrderTest, AFileThatIsNoArrayOfStringsLeavesTheListingOrderUnsorted)
{
    expectIgnored("no property list");
    expectIgnored("");
    expectIgnored("[\"A\", \"B\"]");
    expectIgnored(samples::bytesFromHex(samples::dictionary));
    expectIgnored(samples::bytesFromHex(samples::stringAndNumber));
    expectIgnored("<plist><string>A</string></plist>");
    expectIgnored("<plist><array><string>A</string><integer>1</integer></array></plist>");
    expectIgnored("<plist><dict><key>A</key><string>B</string></dict></plist>");
    expectIgnored("<plist><array><string>A</string>");
}

TEST_F(ItemsFolderExplicitOrderTest, AnEntityBombIsNotSetOff)
{
    std::string bomb = "<?xml version=\"1.0\"?><!DOCTYPE plist [<!ENTITY a0 \"AAAAAAAAAA\">";
    for (int level = 1; level < 30; ++level) {
        bomb += "<!ENTITY a" + std::to_string(level) + " \"";
        for (int copy = 0; copy < 10; ++copy)
            bomb += "&a" + std::to_string(level - 1) + ";";
        bomb += "\">";
    }
    expectIgnored(bomb + "]><plist><array><string>&a29;</string></array></plist>");
}

TEST_F(ItemsFolderExplicitOrderTest, AFileOfOneMebibyteIsReadAndALargerOneIsNot)
{
    std::size_t const limit = 1 << 20;
    auto text = xmlArray({ "B" });
    text.append(limit - text.size(), ' ');
    orderFile(text);
    listFiles({ "C", "A", "B" });
    EXPECT_EQ(titles(), (Titles { "B", "C", "A" }));
    orderFile(text + " ");
    EXPECT_EQ(titles(), (Titles { "C", "A", "B" }));
}

TEST_F(ItemsFolderExplicitOrderTest, ADirectoryInItsPlaceCannotBeReadButExists)
{
    folder.folder(".mw-info.plist");
    expectUnsorted();
}

TEST_F(ItemsFolderExplicitOrderTest, AFifoInItsPlaceIsNotWaitedFor)
{
    folder.fifo(".mw-info.plist");
    expectUnsorted();
}

TEST_F(ItemsFolderExplicitOrderTest, ALinkThatDanglesDoesNotExist)
{
    folder.link(".mw-info.plist", "/nowhere/at/all");
    listFiles({ "C", "A", "D", "B" });
    EXPECT_EQ(titles(), (Titles { "A", "B", "C", "D" }));
}

TEST_F(ItemsFolderExplicitOrderTest, ALinkToAnOrderFileIsFollowed)
{
    TemporaryFolder const elsewhere;
    folder.link(".mw-info.plist", elsewhere.file("order", xmlArray({ "B" })).path());
    listFiles({ "C", "A", "B" });
    EXPECT_EQ(titles(), (Titles { "B", "C", "A" }));
}

TEST_F(ItemsFolderExplicitOrderTest, AnOrderFileCountsForItsOwnFolderOnly)
{
    for (auto const* name : { "b", "a" })
        folder.file(name);
    folder.folder("sub");
    folder.file("sub/.mw-info.plist", xmlArray({ "sub", "b" }));
    EXPECT_EQ(titles(), (Titles { "a", "b", "sub" }));
}

TEST_F(ItemsFolderExplicitOrderTest, AnOrderFileThatIsRemovedNoLongerCounts)
{
    listFiles({ "C", "A", "B" });
    orderFile(xmlArray({ "B" }));
    EXPECT_EQ(titles(), (Titles { "B", "C", "A" }));
    folder.remove(".mw-info.plist");
    EXPECT_EQ(titles(), (Titles { "A", "B", "C" }));
}

TEST_F(ItemsFolderExplicitOrderTest, ManyNamesAreReadInLinearTime)
{
    std::vector<std::string> names;
    for (int number = 0; number < 20'000; ++number)
        names.push_back("n" + std::to_string(number));
    listFiles({ names.begin(), names.end() });
    orderFile(xmlArray({ names.rbegin(), names.rend() }));
    EXPECT_EQ(titles(), Titles(names.rbegin(), names.rend()));
}

using ItemsFolderExplicitOrderDeathTest = ItemsFolderExplicitOrderTest;

TEST_F(ItemsFolderExplicitOrderDeathTest, ANameListedTwiceStopsTheProgramAfterOneLine)
{
    folder.file("other");
    orderFile(xmlArray({ "first", "some name", "third", "some name" }));
    desktop.log.echoToStandardError();
    EXPECT_DEATH(static_cast<void>(scan()),
        testing::AllOf(testing::StartsWith("Marrowick: "), testing::HasSubstr(folder.url().path()),
            testing::HasSubstr("some name"), testing::Not(testing::ContainsRegex("\n.")),
            testing::Not(testing::HasSubstr("third"))));
}

TEST_F(ItemsFolderExplicitOrderDeathTest, TheEmptyNameListedTwiceStopsTheProgram)
{
    orderFile(xmlArray({ "", "" }));
    desktop.log.echoToStandardError();
    EXPECT_DEATH(static_cast<void>(scan()), testing::HasSubstr(folder.url().path()));
}

TEST_F(ItemsFolderExplicitOrderDeathTest, ABinaryListThatNamesOneStringTwiceStopsTheProgram)
{
    orderFile(samples::bytesFromHex(samples::longNameTwice));
    desktop.log.echoToStandardError();
    EXPECT_DEATH(static_cast<void>(scan()), testing::HasSubstr("xxxx"));
}

class ApplyExplicitOrderTest : public ItemsFolderExplicitOrderTest {
protected:
    std::vector<ItemsFolderScanner::Entry> entries() const
    {
        std::vector<ItemsFolderScanner::Entry> made;
        for (auto const* name : { "C", "B", "A" })
            made.push_back({ { MenuNodeKind::file(folder / name), name, {}, {} }, "01", {} });
        made.push_back({ { MenuNodeKind::divider(), "", SuffixCodes::divider, {} }, std::nullopt, {} });
        return made;
    }
    static Titles titlesOf(std::vector<ItemsFolderScanner::Entry> const& entries)
    {
        Titles result;
        for (auto const& entry : entries)
            result.push_back(entry.node.displayName + (entry.sortPrefix ? "/" + *entry.sortPrefix : ""));
        return result;
    }
};

TEST_F(ApplyExplicitOrderTest, ReordersWholeEntriesInPlace)
{
    orderFile(xmlArray({ "A", "B" }));
    auto list = entries();
    ItemsFolderScanner::applyExplicitOrder(list, folder.url());
    EXPECT_EQ(titlesOf(list), (Titles { "A/01", "B/01", "C/01", "" }));
}

TEST_F(ApplyExplicitOrderTest, WithoutAnOrderFileChangesNothing)
{
    auto list = entries();
    ItemsFolderScanner::applyExplicitOrder(list, folder.url());
    EXPECT_EQ(titlesOf(list), (Titles { "C/01", "B/01", "A/01", "" }));
}

TEST_F(ApplyExplicitOrderTest, SortLeavesAFolderWithAnOrderFileAlone)
{
    orderFile("not even a property list");
    auto list = entries();
    ItemsFolderScanner::sort(list, folder.url());
    EXPECT_EQ(titlesOf(list), (Titles { "C/01", "B/01", "A/01", "" }));
}

TEST_F(ApplyExplicitOrderTest, SortSortsAFolderWithoutAnOrderFile)
{
    auto list = entries();
    ItemsFolderScanner::sort(list, folder.url());
    EXPECT_EQ(titlesOf(list), (Titles { "", "C/01", "B/01", "A/01" }));
    sortBy("kindThenAlphabetical");
    ItemsFolderScanner::sort(list, folder.url());
    EXPECT_EQ(titlesOf(list), (Titles { "", "A/01", "B/01", "C/01" }));
}

}
}
