#include "Menus/MWMenuTarget.h"

#include "Actions/MenuActionHandler.h"
#include "Menus/MWMenu.h"
#include "Models/MenuContext.h"
#include "Models/MenuNode.h"
#include "Platform/SharedObjects.h"

#include <any>

namespace marrowick {

MWMenuTarget& MWMenuTarget::shared()
{
    return sharedObject<MWMenuTarget>();
}

void MWMenuTarget::chooseItem(MenuItem& sender)
{
    auto const* represented = std::any_cast<MenuNode>(&sender.representedObject);
    if (!represented)
        return;
    auto const node = *represented;
    auto const context = MenuContext::capture();
    auto const menu = std::dynamic_pointer_cast<MWMenu>(sender.menu());
    MenuActionHandler::choose(node, context, menu ? menu->copyDestination : std::nullopt);
}

}
