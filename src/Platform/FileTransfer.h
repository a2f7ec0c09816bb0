#pragma once

#include "Platform/FileURL.h"
#include "Platform/Result.h"

namespace marrowick {

/// Puts files in other places. Every call waits until it is done. A call that fails leaves the source whole and nothing
/// under the name asked for, or, where an item was moved and its original could not be removed, the whole item under that
/// name; its error says which item it was and why.
///
/// Names are taken exactly as given, and never from an item that has them: where something stands at `to`, a dangling link
/// too, the error is `alreadyExists` and nothing has happened. An item that would go into itself is `intoItself`.
/// Main thread only.
class FileTransfer {
public:
    virtual ~FileTransfer() = default;

    /// Moves an item, a folder with all that it holds; links move as links.
    virtual Result<void> moveItem(FileURL const& at, FileURL const& to) = 0;

    /// Copies an item, a folder with all that it holds, with its times, permissions, owners where allowed, extended
    /// attributes, hard links among the copied files, and holes; links are copied as links.
    virtual Result<void> copyItem(FileURL const& at, FileURL const& to) = 0;

    /// Makes an alias at `at` that leads to the item at `to`; without an item there it is an error.
    virtual Result<void> createAlias(FileURL const& at, FileURL const& to) = 0;

    /// Removes an item, a folder with all that it holds; of a link only the link. What could not be removed stays.
    virtual Result<void> removeItem(FileURL const& at) = 0;
};

}
