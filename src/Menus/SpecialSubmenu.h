#pragma once

#include "Menus/MWMenu.h"
#include "Models/MenuNode.h"

#include <memory>

namespace marrowick {

/// The generated menu that a placeholder stands for, which fills itself when it opens; null for the kinds that are
/// none.
std::shared_ptr<MWMenu> makeSpecialSubmenu(MenuNodeKind::Case kind);

}
