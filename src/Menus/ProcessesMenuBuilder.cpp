#include "Menus/ProcessesMenuBuilder.h"

namespace marrowick {

std::shared_ptr<MWMenu> ProcessesMenuBuilder::build(bool)
{
    return MWMenu::make("Processes");
}

}
