#pragma once

#include "Menus/MWMenu.h"

#include <memory>

namespace marrowick {

/// Makes the menu of the files that were modified last.
class RecentItemsMenuBuilder {
public:
    static std::shared_ptr<MWMenu> build();
};

}
