#pragma once

#include "Freedesktop/Transfer/CopiedItems.h"
#include "Freedesktop/Transfer/TransferFailure.h"

namespace marrowick {

/// Removes the item `name` of the directory open as `folder`, a directory with all that it holds, however deep. No link is
/// followed. What cannot be removed stays, and the first such item is the failure. With `only` given, items that it does
/// not hold stay, too.
TransferOutcome removeTree(int folder, char const* name, CopiedItems const* only = nullptr);

/// The same for a tree that this process made itself, whose directories may have permissions already that keep their owner
/// out.
TransferOutcome removeOwnTree(int folder, char const* name);

}
