#include "Menus/AllAppsMenuBuilder.h"

namespace marrowick {

std::shared_ptr<MWMenu> AllAppsMenuBuilder::build()
{
    return MWMenu::make("All Applications");
}

}
