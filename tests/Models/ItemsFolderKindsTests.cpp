#include "Models/ScannerTest.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

using Case = MenuNodeKind::Case;

class ItemsFolderKindsTest : public ScannerTest {
protected:
    void expectOnly(MenuNodeKind const& kind) const
    {
        auto const node = only();
        EXPECT_EQ(static_cast<int>(node.kind.value()), static_cast<int>(kind.value()));
        EXPECT_EQ(node.kind, kind);
    }
    Case kindOfFile(std::string const& name) const { return nodeOfFile(name)->kind.value(); }
};

TEST_F(ItemsFolderKindsTest, AFileIsAFile)
{
    expectOnly(MenuNodeKind::file(folder.file("a.txt")));
}

TEST_F(ItemsFolderKindsTest, AFolderIsAFolder)
{
    expectOnly(MenuNodeKind::folder(folder.folder("a")));
}

TEST_F(ItemsFolderKindsTest, AnApplicationIsAFile)
{
    expectOnly(MenuNodeKind::file(folder.folder("Open.app")));
}

TEST_F(ItemsFolderKindsTest, AnotherBundleIsAFolder)
{
    expectOnly(MenuNodeKind::folder(folder.folder("Notes.rtfd")));
}

TEST_F(ItemsFolderKindsTest, AFifoIsAFileAndIsNotWaitedFor)
{
    expectOnly(MenuNodeKind::file(folder.fifo("pipe")));
}

TEST_F(ItemsFolderKindsTest, AnAliasToAFolderIsAFolderAtTheAlias)
{
    TemporaryFolder const elsewhere;
    expectOnly(MenuNodeKind::folder(folder.link("alias", elsewhere.url().path())));
}

TEST_F(ItemsFolderKindsTest, AnAliasToAnAliasOfAFolderIsAFolder)
{
    TemporaryFolder const elsewhere;
    elsewhere.folder("real");
    elsewhere.link("middle", "real");
    expectOnly(MenuNodeKind::folder(folder.link("alias", (elsewhere / "middle").path())));
}

TEST_F(ItemsFolderKindsTest, AnAliasToAFileIsAFile)
{
    TemporaryFolder const elsewhere;
    elsewhere.file("real");
    expectOnly(MenuNodeKind::file(folder.link("alias", (elsewhere / "real").path())));
}

TEST_F(ItemsFolderKindsTest, AnAliasToAnApplicationIsAFile)
{
    TemporaryFolder const elsewhere;
    elsewhere.folder("Mail.app");
    expectOnly(MenuNodeKind::file(folder.link("alias", (elsewhere / "Mail.app").path())));
}

TEST_F(ItemsFolderKindsTest, AnAliasThatIsNamedAsAnApplicationIsWhatItLeadsTo)
{
    TemporaryFolder const elsewhere;
    elsewhere.folder("plain");
    expectOnly(MenuNodeKind::folder(folder.link("Mail.app", (elsewhere / "plain").path())));
}

TEST_F(ItemsFolderKindsTest, AnAliasThatDanglesIsAFile)
{
    expectOnly(MenuNodeKind::file(folder.link("alias", "/nowhere/at/all")));
}

TEST_F(ItemsFolderKindsTest, AnAliasToItselfIsAFile)
{
    expectOnly(MenuNodeKind::file(folder.link("alias", "alias")));
}

TEST_F(ItemsFolderKindsTest, AnItemWhoseValuesCannotBeReadIsAFile)
{
    auto const item = folder.folder("a");
    desktop.fileManager.values[item] = {};
    expectOnly(MenuNodeKind::file(item));
}

TEST_F(ItemsFolderKindsTest, AFolderThatMayBeAnAliasIsAFolder)
{
    auto const item = folder.folder("a");
    desktop.fileManager.values[item].isDirectory = true;
    expectOnly(MenuNodeKind::folder(item));
}

TEST_F(ItemsFolderKindsTest, WhereTheDesktopCannotTellApplicationsTheExtensionDoes)
{
    auto const item = folder.folder("Mail.app");
    desktop.fileManager.values[item].isDirectory = true;
    expectOnly(MenuNodeKind::file(item));
}

TEST_F(ItemsFolderKindsTest, AnAliasOfWhichTheListingTellsNothingIsFollowed)
{
    TemporaryFolder const elsewhere;
    auto const item = folder.link("alias", elsewhere.url().path());
    desktop.fileManager.values[item].isAliasFile = true;
    desktop.fileManager.values[item].isDirectory = false;
    expectOnly(MenuNodeKind::folder(item));
}

TEST_F(ItemsFolderKindsTest, AnAliasWithoutAWayToItsTargetIsJudgedByItself)
{
    auto const item = folder.link("alias", "/nowhere/at/all");
    auto& values = desktop.fileManager.values[item];
    values.isAliasFile = true;
    values.isDirectory = true;
    values.isApplication = false;
    expectOnly(MenuNodeKind::folder(item));
}

TEST_F(ItemsFolderKindsTest, ADividerIsOneWhateverTheItemIs)
{
    folder.folder("Line----");
    auto const node = only();
    EXPECT_EQ(node.kind, MenuNodeKind::divider());
    EXPECT_EQ(node.displayName, "");
    EXPECT_EQ(node.codes, SuffixCodes::divider);
    EXPECT_FALSE(node.appConditional);
}

TEST_F(ItemsFolderKindsTest, ADividersTitleIsDropped)
{
    for (auto const* name : { "Line-***", "Line---a----", "a b-!!!----" }) {
        auto const node = nodeOfFile(name);
        ASSERT_TRUE(node) << name;
        EXPECT_EQ(node->kind, MenuNodeKind::divider());
        EXPECT_EQ(node->displayName, "");
        EXPECT_FALSE(node->appConditional);
    }
}

TEST_F(ItemsFolderKindsTest, EachPlaceholderHasItsCode)
{
    EXPECT_EQ(kindOfFile("X---a"), Case::allAppsSubmenu);
    EXPECT_EQ(kindOfFile("X---d"), Case::desktopSubmenu);
    EXPECT_EQ(kindOfFile("X---p"), Case::processesSubmenu);
    EXPECT_EQ(kindOfFile("X---n"), Case::prefPanesSubmenu);
    EXPECT_EQ(kindOfFile("X---R"), Case::recentItemsSubmenu);
}

TEST_F(ItemsFolderKindsTest, OfSeveralPlaceholderCodesTheFirstInTheirOrderWins)
{
    for (auto const* name : { "X---a---d", "X---d---a", "X---R---n---p---d---a" })
        EXPECT_EQ(kindOfFile(name), Case::allAppsSubmenu) << name;
    for (auto const* name : { "X---d---p", "X---R---n---p---d" })
        EXPECT_EQ(kindOfFile(name), Case::desktopSubmenu) << name;
    for (auto const* name : { "X---p---n", "X---R---n---p" })
        EXPECT_EQ(kindOfFile(name), Case::processesSubmenu) << name;
    EXPECT_EQ(kindOfFile("X---R---n"), Case::prefPanesSubmenu);
}

TEST_F(ItemsFolderKindsTest, APlaceholderMayBeAnyItemAndKeepsItsWholeTitle)
{
    desktop.defaults.set("tossDotScptExtension", true);
    folder.folder("Mail.app---a");
    folder.folder("Tool.scpt---d---C");
    folder.file("---p");
    auto const nodes = scan();
    ASSERT_EQ(nodes.size(), 3u);
    EXPECT_EQ(nodes[0].kind, MenuNodeKind::processesSubmenu());
    EXPECT_EQ(nodes[0].displayName, "");
    EXPECT_EQ(nodes[1].kind, MenuNodeKind::allAppsSubmenu());
    EXPECT_EQ(nodes[1].displayName, "Mail.app");
    EXPECT_EQ(nodes[1].codes, SuffixCodes::allApps);
    EXPECT_EQ(nodes[2].kind, MenuNodeKind::desktopSubmenu());
    EXPECT_EQ(nodes[2].displayName, "Tool.scpt");
    EXPECT_EQ(nodes[2].codes, SuffixCodes::desktop | SuffixCodes::copyTemplate);
}

TEST_F(ItemsFolderKindsTest, ATemplateFolderIsOneWhateverTheItemIs)
{
    folder.file("a note---C");
    folder.folder("Mail.app---C");
    folder.folder("templates---C");
    folder.link("then an alias---C", "/nowhere");
    auto const nodes = scan();
    ASSERT_EQ(nodes.size(), 4u);
    EXPECT_EQ(nodes[0].kind, MenuNodeKind::copyTemplateFolder(folder / "a note---C"));
    EXPECT_EQ(nodes[1].kind, MenuNodeKind::copyTemplateFolder(folder / "Mail.app---C"));
    EXPECT_EQ(nodes[1].displayName, "Mail");
    EXPECT_EQ(nodes[2].kind, MenuNodeKind::copyTemplateFolder(folder / "templates---C"));
    EXPECT_EQ(nodes[3].kind, MenuNodeKind::copyTemplateFolder(folder / "then an alias---C"));
}

TEST_F(ItemsFolderKindsTest, CodesThatSayHowToShowAFolderLeaveItAFolder)
{
    folder.folder("a---X");
    folder.folder("b---i");
    auto const nodes = scan();
    ASSERT_EQ(nodes.size(), 2u);
    EXPECT_EQ(nodes[0].kind, MenuNodeKind::folder(folder / "a---X"));
    EXPECT_EQ(nodes[0].codes, SuffixCodes::noSubmenu);
    EXPECT_EQ(nodes[1].kind, MenuNodeKind::folder(folder / "b---i"));
    EXPECT_EQ(nodes[1].codes, SuffixCodes::inlineFolder);
}

TEST_F(ItemsFolderKindsTest, OneLevelIsReadAndNothingBelowIt)
{
    folder.folder("a/b/c");
    folder.folder("i---i/inside");
    EXPECT_EQ(titles(), (Titles { "a", "i" }));
    EXPECT_EQ(desktop.fileManager.listed, (std::vector { folder.url() }));
}

TEST_F(ItemsFolderKindsTest, AFolderReachedThroughAnAliasListsItemsAtTheAlias)
{
    TemporaryFolder const elsewhere;
    elsewhere.file("inside");
    auto const alias = folder.link("alias", elsewhere.url().path());
    auto const nodes = ItemsFolderScanner::children(alias, context, false);
    ASSERT_EQ(nodes.size(), 1u);
    EXPECT_EQ(*nodes.front().kind.url(), alias.appendingPathComponent("inside"));
}

}
}
