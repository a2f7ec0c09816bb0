#include "Menus/PrefPanesMenuBuilder.h"

namespace marrowick {

std::shared_ptr<MWMenu> PrefPanesMenuBuilder::build()
{
    return MWMenu::make("Preference Panes");
}

}
