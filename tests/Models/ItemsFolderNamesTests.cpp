#include "Models/ScannerTest.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

class ItemsFolderNamesTest : public ScannerTest {
protected:
    std::string titleOf(std::string const& name) const
    {
        auto const node = nodeOfFile(name);
        return node ? node->displayName : "not shown";
    }
};

TEST_F(ItemsFolderNamesTest, AnEmptyFolderYieldsAnEmptyList)
{
    EXPECT_TRUE(scan().empty());
}

TEST_F(ItemsFolderNamesTest, AFolderThatCannotBeReadYieldsAnEmptyListWithoutAMessage)
{
    folder.file("file", "text");
    EXPECT_TRUE(ItemsFolderScanner::children(folder / "missing", context, true).empty());
    EXPECT_TRUE(ItemsFolderScanner::children(folder / "file", context, true).empty());
    EXPECT_TRUE(ItemsFolderScanner::children(FileURL(""), context, true).empty());
    EXPECT_TRUE(desktop.log.lines().empty());
}

TEST_F(ItemsFolderNamesTest, HiddenFilesAreSkipped)
{
    folder.file(".secret");
    folder.file("..double");
    folder.folder(".folder");
    folder.file("shown");
    EXPECT_EQ(titles(), (Titles { "shown" }));
}

TEST_F(ItemsFolderNamesTest, TheTopLevelIsScannedAsAnyOther)
{
    folder.file("01)b---z");
    folder.folder("a");
    auto const top = ItemsFolderScanner::children(folder.url(), context, true);
    auto const other = ItemsFolderScanner::children(folder.url(), context, false);
    ASSERT_EQ(top.size(), 2u);
    ASSERT_EQ(other.size(), 2u);
    for (std::size_t index = 0; index < 2; ++index) {
        EXPECT_EQ(top[index].kind, other[index].kind);
        EXPECT_EQ(top[index].displayName, other[index].displayName);
        EXPECT_EQ(top[index].codes, other[index].codes);
    }
}

TEST_F(ItemsFolderNamesTest, TwoCharactersBeforeAParenthesisAreAPrefix)
{
    struct Row {
        std::string name;
        std::string title;
    };
    std::vector<Row> const rows {
        { "01)Mail", "Mail" },
        { "zz)Quit", "Quit" },
        { "a1)x", "x" },
        { "  )x", "x" },
        { "))))", ")" },
        { "\\\")x", "x" },
        { "01) Mail", " Mail" },
        { "01)02)x", "02)x" },
        { "01)(1)x", "(1)x" },
        // Three characters hold nothing that could follow a prefix.
        { "01)", "01)" },
        { "a)", "a)" },
        { "a)bc", "a)bc" },
        { "(1)x", "(1)x" },
        { "1()x", "1()x" },
        { "(()x", "(()x" },
        { "001)x", "001)x" },
        { "0)1)x", "0)1)x" },
        { "Mail", "Mail" },
    };
    for (auto const& row : rows)
        EXPECT_EQ(titleOf(row.name), row.title) << row.name;
}

TEST_F(ItemsFolderNamesTest, ThePrefixCountsCodePointsAndBrokenBytes)
{
    EXPECT_EQ(titleOf("é日)Mail"), "Mail");
    EXPECT_EQ(titleOf("😀😀)Mail"), "Mail");
    EXPECT_EQ(titleOf("e\xCC\x81)Mail"), "Mail");
    EXPECT_EQ(titleOf("\xFF\xFE)Mail"), "Mail");
    EXPECT_EQ(titleOf("\xC3\xE9)Mail"), "Mail");
    EXPECT_EQ(titleOf("01)\xFF"), "\xFF");
    EXPECT_EQ(titleOf("01)é"), "é");
    // One character, although two bytes.
    EXPECT_EQ(titleOf("é)Mail"), "é)Mail");
    EXPECT_EQ(titleOf("日(本)Mail"), "日(本)Mail");
    EXPECT_EQ(titleOf("日()Mail"), "日()Mail");
    EXPECT_EQ(titleOf("\xE6\x97\xA5)Mail"), "日)Mail");
    EXPECT_EQ(titleOf("\xE6\x97)Mail"), "Mail");
}

TEST_F(ItemsFolderNamesTest, ThePrefixComesOffBeforeTheSuffixesAreRead)
{
    auto const node = nodeOfFile("01)Mail.app---z");
    ASSERT_TRUE(node);
    EXPECT_EQ(node->displayName, "Mail");
    EXPECT_EQ(node->codes.rawValue, 0x2);
    EXPECT_EQ(node->kind.url()->lastPathComponent(), "01)Mail.app---z");
    EXPECT_TRUE(nodeOfFile("01)----")->kind.is(MenuNodeKind::Case::divider));
    EXPECT_EQ(titleOf("01)---z"), "");
}

TEST_F(ItemsFolderNamesTest, TheReservedCodeChangesNothingButTheTitle)
{
    auto const node = nodeOfFile("Name---m");
    ASSERT_TRUE(node);
    EXPECT_EQ(node->displayName, "Name");
    EXPECT_EQ(node->codes.rawValue, 0x1000);
    EXPECT_TRUE(node->kind.is(MenuNodeKind::Case::file));
}

TEST_F(ItemsFolderNamesTest, DotAppIsHiddenUnlessTheUserWantsIt)
{
    EXPECT_EQ(titleOf("Mail.app"), "Mail");
    EXPECT_EQ(titleOf("Mail.APP"), "Mail.APP");
    EXPECT_EQ(titleOf("Mail.app.app"), "Mail.app");
    EXPECT_EQ(titleOf("Mail.app.txt"), "Mail.app.txt");
    EXPECT_EQ(titleOf("01).app"), "");
    desktop.defaults.set("tossDotAppExtension", false);
    EXPECT_EQ(titleOf("Mail.app"), "Mail.app");
}

TEST_F(ItemsFolderNamesTest, DotScptIsShownUnlessTheUserHidesIt)
{
    EXPECT_EQ(titleOf("Tool.scpt"), "Tool.scpt");
    desktop.defaults.set("tossDotScptExtension", true);
    EXPECT_EQ(titleOf("Tool.scpt"), "Tool");
    EXPECT_EQ(titleOf("Tool.SCPT"), "Tool.SCPT");
    EXPECT_EQ(titleOf("Tool.scpt---z"), "Tool");
    desktop.defaults.set("tossDotAppExtension", false);
    EXPECT_EQ(titleOf("Tool.scpt"), "Tool");
}

TEST_F(ItemsFolderNamesTest, DotScptIsLookedForAfterDotAppIsGone)
{
    desktop.defaults.set("tossDotScptExtension", true);
    EXPECT_EQ(titleOf("Tool.scpt.app"), "Tool");
    EXPECT_EQ(titleOf("Tool.app.scpt"), "Tool.app");
    desktop.defaults.set("tossDotAppExtension", false);
    EXPECT_EQ(titleOf("Tool.scpt.app"), "Tool.scpt.app");
}

TEST_F(ItemsFolderNamesTest, ExtensionsOfFoldersAreHiddenToo)
{
    folder.folder("Tools.scpt---X");
    folder.folder("Mail.app");
    desktop.defaults.set("tossDotScptExtension", true);
    EXPECT_EQ(titles(), (Titles { "Mail", "Tools" }));
}

TEST_F(ItemsFolderNamesTest, NamesThatAreNoTextKeepTheirBytes)
{
    std::string const name = "01)caf\xE9 \xFF\n\t\x1B---z";
    auto const node = nodeOfFile(name);
    ASSERT_TRUE(node);
    EXPECT_EQ(node->displayName, "caf\xE9 \xFF\n\t\x1B");
    EXPECT_EQ(*node->kind.url(), folder / name);
    EXPECT_EQ(node->kind.url()->path(), folder.url().path() + "/" + name);
}

TEST_F(ItemsFolderNamesTest, TheLongestNameThatADiskHoldsIsRead)
{
    std::string const name(251, 'n');
    EXPECT_EQ(titleOf(name + "---z"), name);
}

}
}
