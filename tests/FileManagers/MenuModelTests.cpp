#include "Shared/MenuModel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

namespace marrowick::companion {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

Snapshot snapshotOf(SnapshotNodes roots)
{
    return { {}, std::move(roots) };
}

std::vector<std::string> labels(MenuEntries const& entries)
{
    std::vector<std::string> labels;
    for (auto const& entry : entries)
        labels.push_back(entry.label);
    return labels;
}

/// All entries at every depth that can be chosen.
void collectChoices(MenuEntries const& entries, MenuEntries& choices)
{
    for (auto const& entry : entries) {
        if (entry.entries.empty())
            choices.push_back(entry);
        collectChoices(entry.entries, choices);
    }
}

void collectNames(MenuEntries const& entries, std::vector<std::string>& names)
{
    for (auto const& entry : entries) {
        names.push_back(entry.name);
        collectNames(entry.entries, names);
    }
}

std::vector<std::string> namesOf(MenuEntries const& entries)
{
    std::vector<std::string> names;
    collectNames(entries, names);
    return names;
}

/// The tree below "Put Into…".
MenuEntries treeOf(SnapshotNodes roots)
{
    return menuFor(snapshotOf(std::move(roots))).at(0).entries;
}

}

TEST(MenuModelTest, WithoutDestinationsThereIsNoMenu)
{
    EXPECT_THAT(menuFor(snapshotOf({})), IsEmpty());
}

TEST(MenuModelTest, FourOperationsStandInTheirOrder)
{
    auto const menu = menuFor(snapshotOf({ { "A", "/A", {} } }));
    EXPECT_THAT(labels(menu), ElementsAre("Put Into…", "Move To", "Copy To", "Alias To"));
    std::vector<std::string> ops;
    for (auto const& entry : menu) {
        EXPECT_EQ(entry.op, "");
        EXPECT_THAT(labels(entry.entries), ElementsAre("A"));
        EXPECT_EQ(entry.entries[0].dest, "/A");
        ops.push_back(entry.entries[0].op);
    }
    EXPECT_THAT(ops, ElementsAre("ask", "move", "copy", "alias"));
}

TEST(MenuModelTest, RootsStandInTheSnapshotsOrder)
{
    EXPECT_THAT(
        labels(treeOf({ { "b", "/b", {} }, { "a", "/a", {} }, { "C", "/C", {} } })), ElementsAre("b", "a", "C"));
}

TEST(MenuModelTest, AFolderThatHoldsOthersIsTheFirstEntryOfItsSubmenu)
{
    auto const tree = treeOf({ { "A", "/x/A", { { "b", "/x/A/b", {} }, { "c", "/x/A/c", {} } } } });
    ASSERT_EQ(tree.size(), 1);
    EXPECT_EQ(tree[0].op, "");
    EXPECT_EQ(tree[0].dest, "");
    EXPECT_THAT(labels(tree[0].entries), ElementsAre("“A”", "b", "c"));
    EXPECT_EQ(tree[0].entries[0].dest, "/x/A");
    EXPECT_EQ(tree[0].entries[2].dest, "/x/A/c");
}

TEST(MenuModelTest, ThreeLevelsBelowARootAreShown)
{
    SnapshotNode node { "4", "/4", {} };
    for (std::string const name : { "3", "2", "1", "0" })
        node = { name, "/" + name, { node } };
    auto const tree = treeOf({ node });
    MenuEntries choices;
    collectChoices(tree, choices);
    EXPECT_THAT(labels(choices), ElementsAre("“0”", "“1”", "“2”", "3"));
    EXPECT_EQ(choices.back().dest, "/3");
}

TEST(MenuModelTest, DestinationsAreThePathsCharacterForCharacter)
{
    std::string const path = "/a _%\n\"\\é";
    EXPECT_EQ(treeOf({ { "A", path, {} } })[0].dest, path);
}

TEST(MenuModelTest, LabelsAreOneVisibleLineOfText)
{
    struct Row {
        std::string name;
        std::string label;
    };
    std::vector<Row> const rows {
        { "", "" },
        { "50 % off_now & here", "50 % off_now & here" },
        { "two\nlines\ttab", "two␊lines␉tab" },
        { "\x7f", "␡" },
        { "a\u0085b", "a\uFFFDb" },
        { "a\u2028b\u2029c", "a␤b␤c" },
        { "left\u202Eright\u2066", "left\uFFFDright\uFFFD" },
        { "\u200Fmark", "\u200Bmark" },
        { "broken \xff\xc3 end", "broken \uFFFD\uFFFD end" },
        { "日本 𝄞 é", "日本 𝄞 é" },
    };
    for (auto const& row : rows)
        EXPECT_EQ(treeOf({ { row.name, "/", {} } })[0].label, row.label) << testing::PrintToString(row.name);
}

TEST(MenuModelTest, NamesHoldOnlyWhatEveryFileManagerTakes)
{
    auto const menu = menuFor(snapshotOf({ { "x", "/a b_c/%2F\n\xC3\xA9\"&:", { { "y", "/", {} } } } }));
    auto const names = namesOf(menu);
    EXPECT_EQ(names.size(), 4 * 4);
    for (auto const& name : names) {
        EXPECT_THAT(name, Not(IsEmpty()));
        EXPECT_TRUE(std::all_of(name.begin(), name.end(), [](unsigned char c) {
            return std::isalnum(c) || c == '-' || c == '_';
        })) << name;
    }
}

TEST(MenuModelTest, NamesDifferForAllEntries)
{
    // A folder twice, and paths that would be one if their characters were dropped or marked carelessly.
    auto const names = namesOf(
        menuFor(snapshotOf({ { "A", "/A", { { "b", "/A/b", {} } } }, { "again", "/A", {} }, { "below", "/A/b", {} },
            { "1", "/x_y", {} }, { "2", "/x/y", {} }, { "3", "/x_2fy", {} }, { "4", "/xy", {} } })));
    EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), names.size());
}

TEST(MenuModelTest, AFolderKeepsItsNameWhenOthersComeAndGo)
{
    auto const before = treeOf({ { "A", "/A", {} }, { "B", "/B", {} } });
    auto const after = treeOf({ { "Z", "/Z", {} }, { "B", "/B", {} } });
    EXPECT_EQ(before[1], after[1]);
    EXPECT_NE(before[0].name, after[0].name);
}

TEST(MenuModelTest, MnemonicMarksAreDoubled)
{
    EXPECT_EQ(withoutMnemonics("_a__b%"), "__a____b%");
    EXPECT_EQ(withoutMnemonics(""), "");
}

TEST(MenuModelTest, ASnapshotOfTheLargestSizeIsWhole)
{
    SnapshotNodes roots;
    for (int root = 0; root < 20; ++root) {
        auto const path = "/root" + std::to_string(root);
        SnapshotNode node { path, path, {} };
        for (int child = 0; child < 100; ++child)
            node.children.push_back({ "child", path + "/" + std::to_string(child), {} });
        roots.push_back(std::move(node));
    }
    MenuEntries choices;
    collectChoices(menuFor(snapshotOf(std::move(roots))), choices);
    EXPECT_EQ(choices.size(), 4 * 20 * 101);
}
}
