#include "Support/SuffixCodes.h"

#include <cstdint>
#include <limits>
#include <type_traits>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

static_assert(std::is_same_v<decltype(SuffixCodes::rawValue), std::int64_t>);

TEST(SuffixCodesTest, EachMemberHasItsBit)
{
    EXPECT_EQ(SuffixCodes::noSubmenu.rawValue, 0x1);
    EXPECT_EQ(SuffixCodes::noIcon.rawValue, 0x2);
    EXPECT_EQ(SuffixCodes::allApps.rawValue, 0x4);
    EXPECT_EQ(SuffixCodes::desktop.rawValue, 0x8);
    EXPECT_EQ(SuffixCodes::processes.rawValue, 0x10);
    EXPECT_EQ(SuffixCodes::prefPanes.rawValue, 0x20);
    EXPECT_EQ(SuffixCodes::recentItems.rawValue, 0x40);
    EXPECT_EQ(SuffixCodes::copyTemplate.rawValue, 0x80);
    EXPECT_EQ(SuffixCodes::inlineFolder.rawValue, 0x100);
    EXPECT_EQ(SuffixCodes::needsFinderSelection.rawValue, 0x200);
    EXPECT_EQ(SuffixCodes::needsNoFinderSelection.rawValue, 0x400);
    EXPECT_EQ(SuffixCodes::needsTextSelection.rawValue, 0x800);
    EXPECT_EQ(SuffixCodes::reserved.rawValue, 0x1000);
    EXPECT_EQ(SuffixCodes::divider.rawValue, 0x2000);
}

TEST(SuffixCodesTest, BehavesAsASet)
{
    SuffixCodes codes;
    EXPECT_TRUE(codes.isEmpty());
    codes.insert(SuffixCodes::noIcon);
    codes.insert(SuffixCodes::noIcon);
    codes.insert(SuffixCodes::divider);
    EXPECT_FALSE(codes.isEmpty());
    EXPECT_EQ(codes, (SuffixCodes { SuffixCodes::noIcon, SuffixCodes::divider }));
    EXPECT_EQ(codes, SuffixCodes::noIcon | SuffixCodes::divider);
    EXPECT_EQ(codes & SuffixCodes::divider, SuffixCodes::divider);
    EXPECT_TRUE((codes & SuffixCodes::desktop).isEmpty());
    codes.remove(SuffixCodes::noIcon);
    codes.remove(SuffixCodes::desktop);
    EXPECT_EQ(codes, SuffixCodes::divider);
    EXPECT_EQ(SuffixCodes {}, SuffixCodes(0));
}

TEST(SuffixCodesTest, ContainsMeansAllOfTheOther)
{
    auto const both = SuffixCodes::noIcon | SuffixCodes::noSubmenu;
    EXPECT_TRUE(both.contains(SuffixCodes::noIcon));
    EXPECT_TRUE(both.contains(both));
    EXPECT_FALSE(SuffixCodes::noIcon.contains(both));
    EXPECT_TRUE(SuffixCodes::noIcon.contains({}));
}

TEST(SuffixCodesTest, AllSixtyFourBitsAreKept)
{
    auto const lowest = std::numeric_limits<std::int64_t>::min();
    EXPECT_EQ((SuffixCodes(lowest) | SuffixCodes(1)).rawValue, lowest + 1);
    EXPECT_TRUE(SuffixCodes(-1).contains(SuffixCodes(lowest)));
}

}
}
