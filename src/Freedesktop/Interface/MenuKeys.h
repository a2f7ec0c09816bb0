#pragma once

#include "Platform/Events.h"

#include <QKeyEvent>

namespace marrowick {

/// Whether the key only changes what other keys mean.
bool isModifierKey(int key);

/// The key press as the core's menus see it. The characters are those of the key on the user's layout: lower case unless
/// Shift is held (Caps Lock counts for nothing), also with Control, Option or Command held.
KeyEvent keyEventFrom(QKeyEvent const& event);

}
