#pragma once

#include "Freedesktop/Transfer/CopiedItems.h"
#include "Freedesktop/Transfer/TransferFailure.h"

#include <functional>

namespace marrowick {

/// An item by its name in an open directory.
struct ItemPlace {
    int folder;
    char const* name;
};

/// Copies the item at `from`, a directory with all that it holds, however deep, to the free name `to`. No link is followed,
/// nothing waits for another program, and until it is complete the copy is its owner's alone.
///
/// `didBegin` runs as soon as something stands at `to`, with a descriptor open on it or -1 for what is neither file nor
/// directory; when it returns false the copy ends with EBUSY. A failure leaves what was copied so far.
///
/// With `copied` given the original is to be removed later: every item that was copied is added, and a directory that its
/// items cannot be removed from is a failure.
TransferOutcome copyTree(ItemPlace from, ItemPlace to, std::function<bool(int)> const& didBegin, CopiedItems* copied);

}
