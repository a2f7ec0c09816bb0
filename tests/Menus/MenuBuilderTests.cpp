#include "Fakes/TestPlatform.h"
#include "Menus/MWMenu.h"
#include "Menus/MenuBuilder.h"

#include <any>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

FileURL const url("/a/caf\xE9");

std::vector<MenuNodeKind> const placeholders { MenuNodeKind::allAppsSubmenu(), MenuNodeKind::desktopSubmenu(),
    MenuNodeKind::processesSubmenu(), MenuNodeKind::prefPanesSubmenu(), MenuNodeKind::recentItemsSubmenu() };
std::vector<MenuNodeKind> const kindsWithAFile { MenuNodeKind::file(url), MenuNodeKind::folder(url),
    MenuNodeKind::copyTemplateFolder(url) };

MenuNode nodeOf(MenuNodeKind kind, std::string title = "title", SuffixCodes codes = {})
{
    return { std::move(kind), std::move(title), codes, std::nullopt };
}

std::shared_ptr<MWMenu> submenuOf(MenuItem const& item)
{
    return std::dynamic_pointer_cast<MWMenu>(item.submenu());
}

/// No entry is made by reading a disk.
class MenuItemTest : public PlatformTest {
protected:
    std::shared_ptr<MenuItem> make(MenuNode const& node, std::optional<FileURL> const& copyDestination = std::nullopt)
    {
        return MenuBuilder::makeMenuItem(node, context, copyDestination);
    }

    MenuContext context;
};

TEST_F(MenuItemTest, TheTitleIsTheNodesInItsExactBytes)
{
    for (auto const* title : { "Mail", "caf\xE9 \xFF", "a\tb\nc", "&", " " })
        EXPECT_EQ(make(nodeOf(MenuNodeKind::file(url), title))->title, title);
}

TEST_F(MenuItemTest, AnEmptyTitleGetsTheDefaultOfItsKind)
{
    std::vector<std::string> const titles { "All Applications", "Desktop", "Processes", "Preference Panes",
        "Recent Items" };
    for (std::size_t index = 0; index < placeholders.size(); ++index) {
        EXPECT_EQ(make(nodeOf(placeholders[index], ""))->title, titles[index]);
        EXPECT_EQ(make(nodeOf(placeholders[index], "own"))->title, "own");
    }
    for (auto const& kind : kindsWithAFile)
        EXPECT_EQ(make(nodeOf(kind, ""))->title, "Untitled");
    EXPECT_EQ(make(nodeOf(MenuNodeKind::divider(), ""))->title, "Untitled");
}

TEST_F(MenuItemTest, HoldsACopyOfItsNode)
{
    auto node = nodeOf(MenuNodeKind::folder(url), "title", SuffixCodes::reserved);
    auto const item = make(node);
    node.displayName = "changed";
    auto const* held = std::any_cast<MenuNode>(&item->representedObject);
    ASSERT_NE(held, nullptr);
    EXPECT_EQ(held->kind, MenuNodeKind::folder(url));
    EXPECT_EQ(held->displayName, "title");
    EXPECT_EQ(held->codes, SuffixCodes::reserved);
}

TEST_F(MenuItemTest, IsEnabledAndHasNoKeyEquivalent)
{
    auto const item = make(nodeOf(MenuNodeKind::file(url)));
    EXPECT_TRUE(item->isEnabled);
    EXPECT_EQ(item->keyEquivalent, "");
    EXPECT_FALSE(item->isSeparator());
}

TEST_F(MenuItemTest, AFileIsChosen)
{
    auto const item = make(nodeOf(MenuNodeKind::file(url)));
    EXPECT_EQ(item->submenu(), nullptr);
    ASSERT_TRUE(item->action);
    item->action(*item);
    EXPECT_EQ(desktop.workspace.opened, (std::vector { url }));
}

TEST_F(MenuItemTest, AFolderOpensASubmenuThatIsNotReadYet)
{
    auto const item = make(nodeOf(MenuNodeKind::folder(url)));
    EXPECT_FALSE(item->action);
    auto const submenu = submenuOf(*item);
    ASSERT_NE(submenu, nullptr);
    EXPECT_EQ(submenu->title, "");
    EXPECT_TRUE(submenu->items().empty());
    EXPECT_TRUE(submenu->refresh);
    EXPECT_TRUE(item->representedObject.has_value());
    EXPECT_TRUE(desktop.fileManager.listed.empty());
}

TEST_F(MenuItemTest, AFolderCodedWithoutSubmenuIsChosenLikeAFile)
{
    for (auto const codes : { SuffixCodes::noSubmenu, SuffixCodes::noSubmenu | SuffixCodes::noIcon }) {
        auto const item = make(nodeOf(MenuNodeKind::folder(url), "title", codes));
        EXPECT_EQ(item->submenu(), nullptr);
        EXPECT_TRUE(item->action);
    }
}

TEST_F(MenuItemTest, TheCodeAgainstSubmenusIsForFoldersOnly)
{
    for (auto const& kind : placeholders)
        EXPECT_NE(make(nodeOf(kind, "title", SuffixCodes::noSubmenu))->submenu(), nullptr);
    EXPECT_NE(make(nodeOf(MenuNodeKind::copyTemplateFolder(url), "title", SuffixCodes::noSubmenu))->submenu(), nullptr);
}

TEST_F(MenuItemTest, APlaceholderOpensItsGeneratedMenu)
{
    std::vector<std::string> const titles { "All Applications", "Desktop", "Processes", "Preference Panes",
        "Recent Items" };
    for (std::size_t index = 0; index < placeholders.size(); ++index) {
        auto const item = make(nodeOf(placeholders[index], "own"), FileURL("/destination"));
        auto const submenu = submenuOf(*item);
        ASSERT_NE(submenu, nullptr);
        EXPECT_EQ(submenu->title, titles[index]);
        EXPECT_EQ(submenu->copyDestination, std::nullopt);
        EXPECT_FALSE(item->action);
        EXPECT_TRUE(item->representedObject.has_value());
    }
}

TEST_F(MenuItemTest, AFolderInheritsTheCopyDestination)
{
    context.copyDestinationFolder = FileURL("/front");
    EXPECT_EQ(submenuOf(*make(nodeOf(MenuNodeKind::folder(url))))->copyDestination, std::nullopt);
    EXPECT_EQ(submenuOf(*make(nodeOf(MenuNodeKind::folder(url)), FileURL("/inherited")))->copyDestination,
        FileURL("/inherited"));
}

TEST_F(MenuItemTest, ATemplateFolderCopiesIntoTheFrontWindow)
{
    auto const node = nodeOf(MenuNodeKind::copyTemplateFolder(url));
    EXPECT_EQ(submenuOf(*make(node, FileURL("/inherited")))->copyDestination, std::nullopt);
    context.copyDestinationFolder = FileURL("/front");
    EXPECT_EQ(submenuOf(*make(node, FileURL("/inherited")))->copyDestination, FileURL("/front"));
    EXPECT_EQ(submenuOf(*make(node))->title, "");
    EXPECT_FALSE(make(node)->action);
}

TEST_F(MenuItemTest, AnEntryOfAFileHasTheFilesIconOfSixteenPoints)
{
    for (auto const& kind : kindsWithAFile) {
        EXPECT_EQ(MenuBuilder::icon(nodeOf(kind)), Image::iconForFile(url, 16));
        EXPECT_EQ(make(nodeOf(kind))->image, Image::iconForFile(url, 16));
    }
}

TEST_F(MenuItemTest, APlaceholderHasItsSymbolInNaturalSizeWithoutDescription)
{
    std::vector<std::string> const symbols { "square.grid.2x2", "menubar.dock.rectangle", "square.stack.3d.up",
        "gearshape", "clock" };
    for (std::size_t index = 0; index < placeholders.size(); ++index) {
        Image const expected { SystemSymbol { symbols[index] }, 0, "" };
        EXPECT_EQ(MenuBuilder::icon(nodeOf(placeholders[index])), expected);
        EXPECT_EQ(make(nodeOf(placeholders[index]))->image, expected);
    }
}

TEST_F(MenuItemTest, ADividerHasNoIcon)
{
    EXPECT_EQ(MenuBuilder::icon(nodeOf(MenuNodeKind::divider())), std::nullopt);
}

TEST_F(MenuItemTest, AnEntryCodedWithoutIconHasNoneWhateverItsKind)
{
    auto kinds = placeholders;
    kinds.insert(kinds.end(), kindsWithAFile.begin(), kindsWithAFile.end());
    kinds.push_back(MenuNodeKind::divider());
    for (auto const& kind : kinds)
        EXPECT_EQ(make(nodeOf(kind, "title", SuffixCodes::noIcon))->image, std::nullopt);
}

class PopulateTest : public MenuItemTest {
protected:
    std::vector<std::string> shownAfter(std::vector<MenuNode> const& nodes)
    {
        MenuBuilder::populate(*menu, nodes, context);
        desktop.menus.popUp(menu, nullptr);
        return desktop.menus.shown();
    }

    std::shared_ptr<MWMenu> const menu = MWMenu::make("");
};

using Shown = std::vector<std::string>;

TEST_F(PopulateTest, EntriesStandInTheOrderOfTheNodesAfterWhatTheMenuHolds)
{
    menu->addItem(MenuItem::make("before"));
    EXPECT_EQ(shownAfter({ nodeOf(MenuNodeKind::file(url), "b"), nodeOf(MenuNodeKind::divider(), ""),
                  nodeOf(MenuNodeKind::folder(url), "a") }),
        (Shown { "before", "b", "---", "a" }));
}

TEST_F(PopulateTest, DividersStandWhereverTheyAre)
{
    auto const line = nodeOf(MenuNodeKind::divider(), "");
    EXPECT_EQ(
        shownAfter({ line, line, nodeOf(MenuNodeKind::file(url), "a"), line }), (Shown { "---", "---", "a", "---" }));
}

TEST_F(PopulateTest, EntriesGetTheCopyDestinationOfTheMenu)
{
    menu->copyDestination = FileURL("/destination");
    MenuBuilder::populate(*menu, { nodeOf(MenuNodeKind::folder(url)) }, context);
    EXPECT_EQ(submenuOf(*menu->items().front())->copyDestination, FileURL("/destination"));
}

TEST_F(PopulateTest, AnEmptyMenuSaysSo)
{
    EXPECT_EQ(shownAfter({}), (Shown { "[(Empty — drag items into this folder)]" }));
    auto const& item = *menu->items().front();
    EXPECT_FALSE(item.action);
    EXPECT_EQ(item.keyEquivalent, "");
    EXPECT_FALSE(item.representedObject.has_value());
    EXPECT_FALSE(item.isEnabled);
}

TEST_F(PopulateTest, AnEmptyMenuStaysEmptyWhenTheUserWantsIt)
{
    desktop.defaults.set("ignoreEmptyItemsFolder", true);
    EXPECT_EQ(shownAfter({}), Shown {});
}

TEST_F(PopulateTest, AMenuOfADividerIsNotEmpty)
{
    EXPECT_EQ(shownAfter({ nodeOf(MenuNodeKind::divider(), "") }), (Shown { "---" }));
}

TEST_F(PopulateTest, AMenuThatHoldsSomethingAlreadyIsNotEmpty)
{
    menu->addItem(MenuItem::makeSeparator());
    EXPECT_EQ(shownAfter({}), (Shown { "---" }));
}

}
}
