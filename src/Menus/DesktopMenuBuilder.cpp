#include "Menus/DesktopMenuBuilder.h"

namespace marrowick {

std::shared_ptr<MWMenu> DesktopMenuBuilder::build()
{
    return MWMenu::make("Desktop");
}

}
