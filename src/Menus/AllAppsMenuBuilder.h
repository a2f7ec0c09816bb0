#pragma once

#include "Menus/MWMenu.h"

#include <memory>

namespace marrowick {

/// Makes the menu of all applications.
class AllAppsMenuBuilder {
public:
    static std::shared_ptr<MWMenu> build();
};

}
