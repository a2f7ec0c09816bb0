#include "Models/MenuNode.h"

#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

FileURL const url("/a/b");

std::vector<MenuNodeKind> const kindsInOrder { MenuNodeKind::file(url), MenuNodeKind::folder(url),
    MenuNodeKind::copyTemplateFolder(url), MenuNodeKind::divider(), MenuNodeKind::allAppsSubmenu(),
    MenuNodeKind::desktopSubmenu(), MenuNodeKind::processesSubmenu(), MenuNodeKind::prefPanesSubmenu(),
    MenuNodeKind::recentItemsSubmenu() };

TEST(MenuNodeKindTest, KindsAreNumberedInTheirOrder)
{
    for (std::size_t number = 0; number < kindsInOrder.size(); ++number)
        EXPECT_EQ(static_cast<std::size_t>(kindsInOrder[number].value()), number);
}

TEST(MenuNodeKindTest, OnlyTheFirstThreeKindsHaveALocation)
{
    for (std::size_t number = 0; number < kindsInOrder.size(); ++number) {
        auto const& kind = kindsInOrder[number];
        EXPECT_EQ(kind.hasURL(), number < 3);
        ASSERT_EQ(kind.url() != nullptr, number < 3);
        if (kind.hasURL()) {
            EXPECT_EQ(*kind.url(), url);
        }
    }
}

TEST(MenuNodeKindTest, AFolderIsNotTheFileOfTheSameLocation)
{
    EXPECT_NE(MenuNodeKind::folder(url), MenuNodeKind::file(url));
    EXPECT_NE(MenuNodeKind::folder(url), MenuNodeKind::copyTemplateFolder(url));
    EXPECT_NE(MenuNodeKind::file(url), MenuNodeKind::file(FileURL("/a/c")));
    EXPECT_EQ(MenuNodeKind::file(url), MenuNodeKind::file(url));
    EXPECT_TRUE(MenuNodeKind::folder(url).is(MenuNodeKind::Case::folder));
    EXPECT_FALSE(MenuNodeKind::folder(url).is(MenuNodeKind::Case::file));
}

TEST(MenuNodeTest, ADividerHasNoTitleAndNoLocation)
{
    MenuNode const divider { MenuNodeKind::divider(), "", SuffixCodes::divider, std::nullopt };
    EXPECT_EQ(divider.kind.url(), nullptr);
    EXPECT_TRUE(divider.displayName.empty());
}

TEST(MenuNodeTest, ACopyOwnsItsValues)
{
    MenuNode original { MenuNodeKind::file(url), "b", SuffixCodes::noIcon, AppConditional { true, "org" } };
    auto const copy = original;
    original.kind = MenuNodeKind::divider();
    original.displayName = "changed";
    original.codes = {};
    original.appConditional->identifierFragment = "changed";
    EXPECT_EQ(copy.kind, MenuNodeKind::file(url));
    EXPECT_EQ(copy.displayName, "b");
    EXPECT_EQ(copy.codes, SuffixCodes::noIcon);
    EXPECT_EQ(copy.appConditional, (AppConditional { true, "org" }));
}

}
}
