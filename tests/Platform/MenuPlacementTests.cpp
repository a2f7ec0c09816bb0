#include "Platform/MenuPlacement.h"

#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {

void PrintTo(Point const& point, std::ostream* stream)
{
    *stream << "(" << point.x << ", " << point.y << ")";
}

namespace {

constexpr Rect frame { 0, 0, 1920, 1080 };
std::vector<Screen> const panelAtTop { { frame, { 0, 30, 1920, 1050 } } };
std::vector<Screen> const panelAtBottom { { frame, { 0, 0, 1920, 1050 } } };
std::vector<Screen> const panelAtLeft { { frame, { 30, 0, 1890, 1080 } } };
std::vector<Screen> const panelAtRight { { frame, { 0, 0, 1890, 1080 } } };
std::vector<Screen> const noPanel { { frame, frame } };

/// A second screen to the right of the first, lower and smaller, with a panel of its own at the bottom.
std::vector<Screen> const twoScreens { { frame, { 0, 0, 1920, 1050 } },
    { { 1920, 200, 1280, 800 }, { 1920, 200, 1280, 770 } } };

constexpr Size menu { 200, 300 };

struct PlacementCase {
    std::string name;
    Rect anchor;
    Size size;
    std::vector<Screen> screens;
    Point expected;
};

class MenuPlacementTest : public testing::TestWithParam<PlacementCase> { };

TEST_P(MenuPlacementTest, StandsBesideTheAnchorInsideTheWorkArea)
{
    auto const& row = GetParam();
    EXPECT_EQ(placeMenu(row.anchor, row.size, row.screens), row.expected);
}

std::vector<PlacementCase> const cases {
    // An icon in the middle of a panel.
    { "BelowAPanelAtTheTop", { 900, 3, 24, 24 }, menu, panelAtTop, { 900, 30 } },
    { "AboveAPanelAtTheBottom", { 900, 1053, 24, 24 }, menu, panelAtBottom, { 900, 750 } },
    { "RightOfAPanelAtTheLeft", { 3, 500, 24, 24 }, menu, panelAtLeft, { 30, 500 } },
    { "LeftOfAPanelAtTheRight", { 1893, 500, 24, 24 }, menu, panelAtRight, { 1690, 500 } },
    // An icon at the end of a panel is near to two edges.
    { "AtTheRightEndOfAPanelAtTheTop", { 1893, 3, 24, 24 }, menu, panelAtTop, { 1720, 30 } },
    { "AtTheLeftEndOfAPanelAtTheTop", { 1, 3, 24, 24 }, menu, panelAtTop, { 1, 30 } },
    { "AtTheRightEndOfAPanelAtTheBottom", { 1895, 1053, 24, 24 }, menu, panelAtBottom, { 1720, 750 } },
    { "AtTheLeftEndOfAPanelAtTheBottom", { 0, 1053, 24, 24 }, menu, panelAtBottom, { 0, 750 } },
    { "AtTheTopOfAPanelAtTheLeft", { 3, 0, 24, 24 }, menu, panelAtLeft, { 30, 0 } },
    { "AtTheBottomOfAPanelAtTheLeft", { 3, 1055, 24, 24 }, menu, panelAtLeft, { 30, 780 } },
    { "AtTheBottomOfAPanelAtTheRight", { 1893, 1055, 24, 24 }, menu, panelAtRight, { 1690, 780 } },
    // A panel that hides itself leaves the whole screen free.
    { "BelowAnIconThatNoPanelHolds", { 900, 3, 24, 24 }, menu, noPanel, { 900, 27 } },
    { "AboveAnIconThatNoPanelHolds", { 900, 1053, 24, 24 }, menu, noPanel, { 900, 753 } },
    // At the pointer.
    { "AtThePointerNearTheTop", { 900, 10, 0, 0 }, menu, panelAtTop, { 900, 30 } },
    { "AtThePointerNearTheBottom", { 900, 1060, 0, 0 }, menu, panelAtBottom, { 900, 750 } },
    { "AtThePointerNearTheLeft", { 5, 500, 0, 0 }, menu, panelAtLeft, { 30, 500 } },
    { "AtThePointerNearTheRight", { 1900, 500, 0, 0 }, menu, panelAtRight, { 1690, 500 } },
    { "AtThePointerInTheMiddleOfTheUpperHalf", { 900, 400, 0, 0 }, menu, noPanel, { 900, 400 } },
    // Larger than what is free.
    { "TallerThanTheWorkArea", { 900, 3, 24, 24 }, { 200, 5000 }, panelAtTop, { 900, 30 } },
    { "TallerThanTheWorkAreaAboveAPanel", { 900, 1053, 24, 24 }, { 200, 5000 }, panelAtBottom, { 900, 0 } },
    { "WiderThanTheWorkArea", { 900, 3, 24, 24 }, { 5000, 300 }, panelAtTop, { 0, 30 } },
    { "LargerThanTheWorkAreaBothWays", { 3, 500, 24, 24 }, { 5000, 5000 }, panelAtLeft, { 30, 0 } },
    { "AsLargeAsTheWorkArea", { 900, 3, 24, 24 }, { 1920, 1050 }, panelAtTop, { 0, 30 } },
    // Two screens.
    { "OnTheSecondScreen", { 2500, 973, 24, 24 }, menu, twoScreens, { 2500, 670 } },
    { "AtTheRightEndOfTheSecondScreen", { 3170, 973, 24, 24 }, menu, twoScreens, { 3000, 670 } },
    { "OnTheFirstScreenBesideTheSecond", { 1890, 1053, 24, 24 }, menu, twoScreens, { 1720, 750 } },
    { "OnTheSecondScreenBesideTheFirst", { 1920, 973, 24, 24 }, menu, twoScreens, { 1920, 670 } },
    { "AcrossTwoScreensOnTheOneThatHoldsTheCentre", { 1910, 973, 24, 24 }, menu, twoScreens, { 1920, 670 } },
    { "BesideAllScreensOnTheNearest", { 3300, 973, 24, 24 }, menu, twoScreens, { 3000, 670 } },
    // A desktop that tells of no screen.
    { "WithoutScreensBelowTheAnchor", { 900, 3, 24, 24 }, menu, {}, { 900, 27 } },
};

INSTANTIATE_TEST_SUITE_P(
    Places, MenuPlacementTest, testing::ValuesIn(cases), [](auto const& row) { return row.param.name; });

TEST(MenuPlacementPropertyTest, AMenuThatFitsIsAlwaysWhollyInOneWorkArea)
{
    for (auto const& screens : { panelAtTop, panelAtBottom, panelAtLeft, panelAtRight, noPanel, twoScreens }) {
        for (int x = -50; x < 3400; x += 37) {
            for (int y = -50; y < 1200; y += 31) {
                for (int const side : { 0, 24 }) {
                    auto const place = placeMenu({ x, y, side, side }, menu, screens);
                    bool isInside = false;
                    for (auto const& [screenFrame, area] : screens) {
                        isInside |= place.x >= area.x && place.y >= area.y && place.x + menu.width <= area.right()
                            && place.y + menu.height <= area.bottom();
                    }
                    ASSERT_TRUE(isInside) << x << ", " << y;
                }
            }
        }
    }
}

TEST(MenuPlacementPropertyTest, AMenuInTheOpenNeverCoversItsIcon)
{
    for (auto const& screens : { panelAtTop, panelAtBottom, panelAtLeft, panelAtRight }) {
        auto const& area = screens.front().workArea;
        for (int x = 0; x <= frame.right() - 24; x += 24) {
            for (int y = 0; y <= frame.bottom() - 24; y += 24) {
                Rect const icon { x, y, 24, 24 };
                bool const isInPanel = icon.bottom() <= area.y || icon.y >= area.bottom() || icon.right() <= area.x
                    || icon.x >= area.right();
                if (!isInPanel)
                    continue;
                auto const place = placeMenu(icon, menu, screens);
                bool const isBeside = place.x >= icon.right() || place.x + menu.width <= icon.x
                    || place.y >= icon.bottom() || place.y + menu.height <= icon.y;
                ASSERT_TRUE(isBeside) << x << ", " << y;
            }
        }
    }
}

struct SubmenuCase {
    std::string name;
    Rect proposed;
    Rect parent;
    Rect grandparent;
    Point expected;
};

class SubmenuPlacementTest : public testing::TestWithParam<SubmenuCase> { };

TEST_P(SubmenuPlacementTest, KeepsTheSideThatItsMenusHaveTurnedTo)
{
    auto const& row = GetParam();
    EXPECT_EQ(placeSubmenu(row.proposed, row.parent, row.grandparent, { 0, 30, 1000, 700 }), row.expected);
}

std::vector<SubmenuCase> const submenuCases {
    { "ToTheRightAsProposed", { 398, 50, 200, 90 }, { 200, 40, 200, 90 }, { 2, 30, 200, 90 }, { 398, 50 } },
    { "ToTheLeftAsProposed", { 404, 50, 200, 90 }, { 602, 40, 200, 90 }, { 800, 30, 200, 90 }, { 404, 50 } },
    { "OnToTheLeft", { 800, 50, 150, 90 }, { 602, 40, 200, 90 }, { 800, 30, 200, 90 }, { 454, 50 } },
    { "BackWhereTheLeftHasNoRoom", { 298, 50, 150, 90 }, { 100, 40, 200, 90 }, { 298, 30, 200, 90 }, { 298, 50 } },
    { "OnToTheRight", { 50, 50, 150, 90 }, { 198, 40, 200, 90 }, { 0, 30, 200, 90 }, { 396, 50 } },
    { "BackWhereTheRightHasNoRoom", { 650, 50, 150, 90 }, { 798, 40, 200, 90 }, { 600, 30, 200, 90 }, { 650, 50 } },
};

INSTANTIATE_TEST_SUITE_P(Sides, SubmenuPlacementTest, testing::ValuesIn(submenuCases),
    [](testing::TestParamInfo<SubmenuCase> const& row) { return row.param.name; });

}
}
