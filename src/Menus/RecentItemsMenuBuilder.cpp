#include "Menus/RecentItemsMenuBuilder.h"

namespace marrowick {

std::shared_ptr<MWMenu> RecentItemsMenuBuilder::build()
{
    return MWMenu::make("Recent Items");
}

}
