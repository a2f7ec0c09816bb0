#include "Fakes/TestPlatform.h"
#include "Menus/AllAppsMenuBuilder.h"
#include "Menus/DesktopMenuBuilder.h"
#include "Menus/PrefPanesMenuBuilder.h"
#include "Menus/ProcessesMenuBuilder.h"
#include "Menus/RecentItemsMenuBuilder.h"
#include "Menus/SpecialSubmenu.h"

#include <gtest/gtest.h>

namespace marrowick {
namespace {

using Case = MenuNodeKind::Case;
using SpecialSubmenuTest = PlatformTest;

TEST_F(SpecialSubmenuTest, TheGeneratedMenusHaveTheirTitles)
{
    EXPECT_EQ(DesktopMenuBuilder::build()->title, "Desktop");
    EXPECT_EQ(ProcessesMenuBuilder::build(false)->title, "Processes");
    EXPECT_EQ(RecentItemsMenuBuilder::build()->title, "Recent Items");
}

TEST_F(SpecialSubmenuTest, EachPlaceholderGetsItsMenu)
{
    EXPECT_EQ(makeSpecialSubmenu(Case::allAppsSubmenu)->title, AllAppsMenuBuilder::build()->title);
    EXPECT_EQ(makeSpecialSubmenu(Case::desktopSubmenu)->title, "Desktop");
    EXPECT_EQ(makeSpecialSubmenu(Case::processesSubmenu)->title, "Processes");
    EXPECT_EQ(makeSpecialSubmenu(Case::prefPanesSubmenu)->title, PrefPanesMenuBuilder::build()->title);
    EXPECT_EQ(makeSpecialSubmenu(Case::recentItemsSubmenu)->title, "Recent Items");
}

TEST_F(SpecialSubmenuTest, EachCallMakesAMenuOfItsOwn)
{
    EXPECT_NE(makeSpecialSubmenu(Case::desktopSubmenu), makeSpecialSubmenu(Case::desktopSubmenu));
}

TEST_F(SpecialSubmenuTest, OtherKindsHaveNone)
{
    for (auto const kind : { Case::file, Case::folder, Case::copyTemplateFolder, Case::divider })
        EXPECT_EQ(makeSpecialSubmenu(kind), nullptr);
}

}
}
