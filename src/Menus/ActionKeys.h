#pragma once

#include "Actions/ModifierAction.h"
#include "Platform/Events.h"

#include <optional>

namespace marrowick {

/// What a key pressed in an open menu does; absent for a key that belongs to the desktop's menu.
///
/// With Command, alone or with Option, the key itself makes no difference.
std::optional<ModifierAction> modifierActionFor(KeyEvent const& event);

}
