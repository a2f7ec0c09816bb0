#pragma once

#include "Menus/MWMenu.h"

#include <memory>

namespace marrowick {

/// Makes the menu of the mounted volumes and the contents of the Desktop folder.
class DesktopMenuBuilder {
public:
    static std::shared_ptr<MWMenu> build();
};

}
