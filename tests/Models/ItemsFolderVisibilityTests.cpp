#include "Models/ScannerTest.h"

#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

class ItemsFolderVisibilityTest : public ScannerTest {
protected:
    bool isShown(std::string const& name, std::optional<std::string> frontmost = std::nullopt)
    {
        context.frontmostBundleID = std::move(frontmost);
        return nodeOfFile(name).has_value();
    }
};

TEST_F(ItemsFolderVisibilityTest, AConditionIsMetByAFragmentOfTheFrontmostIdentifier)
{
    EXPECT_TRUE(isShown("Edit com.example.Editor-!!!", "com.example.Editor"));
    EXPECT_TRUE(isShown("Edit example-!!!", "com.example.Editor"));
    EXPECT_TRUE(isShown("Edit EDITOR-!!!", "com.example.Editor"));
    EXPECT_TRUE(isShown("Edit editor-!!!", "com.example.EDITOR.beta"));
    EXPECT_FALSE(isShown("Edit com.example.Editor-!!!", "com.example.Mail"));
    EXPECT_FALSE(isShown("Edit com.example.Editor.beta-!!!", "com.example.Editor"));
    EXPECT_FALSE(isShown("Edit example-!!!", ""));
}

TEST_F(ItemsFolderVisibilityTest, ANegatedConditionIsMetByAllOthers)
{
    EXPECT_FALSE(isShown("Edit !com.example.Editor-!!!", "com.example.Editor"));
    EXPECT_FALSE(isShown("Edit !EDITOR-!!!", "com.example.Editor"));
    EXPECT_TRUE(isShown("Edit !com.example.Editor-!!!", "com.example.Mail"));
    EXPECT_TRUE(isShown("Edit !example-!!!", ""));
}

TEST_F(ItemsFolderVisibilityTest, WithoutAFrontmostApplicationOnlyANegatedConditionIsMet)
{
    EXPECT_FALSE(isShown("Edit com.example.Editor-!!!"));
    EXPECT_TRUE(isShown("Edit !com.example.Editor-!!!"));
    EXPECT_TRUE(isShown("Edit"));
}

TEST_F(ItemsFolderVisibilityTest, ANodeCarriesItsCondition)
{
    context.frontmostBundleID = "com.example.Editor";
    auto const node = nodeOfFile("Edit com.example-!!!---z");
    ASSERT_TRUE(node);
    EXPECT_EQ(node->appConditional, (AppConditional { false, "com.example" }));
    auto const placeholder = nodeOfFile("Edit !org-!!!---a");
    ASSERT_TRUE(placeholder);
    EXPECT_EQ(placeholder->appConditional, (AppConditional { true, "org" }));
    EXPECT_FALSE(nodeOfFile("Plain")->appConditional);
}

TEST_F(ItemsFolderVisibilityTest, ConditionsApplyToPlaceholdersToo)
{
    EXPECT_FALSE(isShown("Apps com.example-!!!---a", "org.other"));
    EXPECT_TRUE(isShown("Apps com.example-!!!---a", "com.example"));
}

struct CodeRow {
    std::string name;
    bool withoutSelection;
    bool withSelection;
    bool withTextOnly;
};

TEST_F(ItemsFolderVisibilityTest, CodesTieEntriesToTheSelection)
{
    std::vector<CodeRow> const rows {
        { "Plain", true, true, true },
        { "Files---f", false, true, false },
        { "None---N", true, false, true },
        { "Text---t", false, false, true },
        { "Templates---C", true, false, true },
        { "Never---f---N", false, false, false },
        { "Never---f---C", false, false, false },
        { "Never---N---t", false, false, true },
        { "Apps---a---f", false, true, false },
        { "Apps---a---C", true, false, true },
    };
    std::vector<FileURL> const selection { FileURL("/selected/one") };
    for (auto const& row : rows) {
        context = {};
        EXPECT_EQ(isShown(row.name), row.withoutSelection) << row.name;
        context.finderSelection = selection;
        EXPECT_EQ(isShown(row.name), row.withSelection) << row.name;
        context.finderSelection = {};
        context.hasTextSelection = true;
        EXPECT_EQ(isShown(row.name), row.withTextOnly) << row.name;
    }
}

TEST_F(ItemsFolderVisibilityTest, AnEntryForSelectedTextIsNeverShownInACapturedContext)
{
    folder.file("Text---t");
    desktop.finder.selectTwoFiles();
    context = MenuContext::capture();
    EXPECT_TRUE(scan().empty());
}

TEST_F(ItemsFolderVisibilityTest, ATemplateFolderIsAbsentWhileFilesAreSelected)
{
    folder.folder("Templates---C");
    EXPECT_EQ(titles(), (Titles { "Templates" }));
    context.finderSelection = { FileURL("/selected/one") };
    EXPECT_TRUE(scan().empty());
}

TEST_F(ItemsFolderVisibilityTest, AHiddenEntryLeavesTheOthersInTheirOrder)
{
    for (auto const* name : { "a", "b---f", "c", "d no.such-!!!", "e" })
        folder.file(name);
    EXPECT_EQ(titles(), (Titles { "a", "c", "e" }));
}

}
}
