#pragma once

#include "Platform/FileTransfer.h"

namespace marrowick {

/// Moves and copies files so that no byte is lost: within a file system by a rename that never replaces, across file systems
/// and for copies under a hidden name in the destination folder, which becomes the item's own when all of it is there.
class FreedesktopFileTransfer final : public FileTransfer {
public:
    Result<void> moveItem(FileURL const& at, FileURL const& to) override;
    Result<void> copyItem(FileURL const& at, FileURL const& to) override;
    Result<void> createAlias(FileURL const& at, FileURL const& to) override;
    Result<void> removeItem(FileURL const& at) override;
};

}
