#pragma once

#include "Menus/MWMenu.h"

#include <memory>

namespace marrowick {

/// Makes the menu of the installed settings panes.
class PrefPanesMenuBuilder {
public:
    static std::shared_ptr<MWMenu> build();
};

}
