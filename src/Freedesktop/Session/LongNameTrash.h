#pragma once

#include "Platform/FileURL.h"
#include "Platform/Result.h"

namespace marrowick {

/// Whether the item's name is so long that GIO would not get the note written that tells where the item was: it refuses
/// the longest names, and leaves the note of slightly shorter ones empty.
bool needsShorterNameInTrash(FileURL const& url);

/// Moves an item to the trash of its file system under a shortened name, and its whole name into the note beside it. The
/// file system is one that has, or may have, a trash. Nothing is ever replaced or deleted.
Result<void> trashUnderShorterName(FileURL const& url);

}
