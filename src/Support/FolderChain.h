#pragma once

#include "Platform/FileManager.h"
#include "Platform/FileURL.h"

#include <optional>
#include <vector>

namespace marrowick {

/// The folders on the way down into a tree whose contents stand in one list, so that a folder that leads back to one of them
/// ends the way. Main thread only.
class FolderChain {
public:
    /// False when the folder is on the way already; otherwise `leave` follows.
    bool enter(FileURL const& folder);

    void leave() { chain_.pop_back(); }

private:
    std::vector<std::optional<FileIdentity>> chain_;
};

}
