#include "Menus/SpecialSubmenu.h"

#include "Menus/AllAppsMenuBuilder.h"
#include "Menus/DesktopMenuBuilder.h"
#include "Menus/PrefPanesMenuBuilder.h"
#include "Menus/ProcessesMenuBuilder.h"
#include "Menus/RecentItemsMenuBuilder.h"

namespace marrowick {

std::shared_ptr<MWMenu> makeSpecialSubmenu(MenuNodeKind::Case kind)
{
    switch (kind) {
    case MenuNodeKind::Case::allAppsSubmenu:
        return AllAppsMenuBuilder::build();
    case MenuNodeKind::Case::desktopSubmenu:
        return DesktopMenuBuilder::build();
    case MenuNodeKind::Case::processesSubmenu:
        return ProcessesMenuBuilder::build(false);
    case MenuNodeKind::Case::prefPanesSubmenu:
        return PrefPanesMenuBuilder::build();
    case MenuNodeKind::Case::recentItemsSubmenu:
        return RecentItemsMenuBuilder::build();
    case MenuNodeKind::Case::file:
    case MenuNodeKind::Case::folder:
    case MenuNodeKind::Case::copyTemplateFolder:
    case MenuNodeKind::Case::divider:
        break;
    }
    return nullptr;
}

}
