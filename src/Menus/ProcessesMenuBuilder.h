#pragma once

#include "Menus/MWMenu.h"

#include <memory>

namespace marrowick {

/// Makes the menu of the running applications.
class ProcessesMenuBuilder {
public:
    static std::shared_ptr<MWMenu> build(bool includeBackgroundOnly);
};

}
