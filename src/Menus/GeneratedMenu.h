#pragma once

#include "Menus/MWMenu.h"
#include "Models/MenuNode.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace marrowick {

/// An empty menu that asks `nodes` for its contents each time it opens.
std::shared_ptr<MWMenu> makeGeneratedMenu(std::string title, std::function<std::vector<MenuNode>()> nodes);

}
