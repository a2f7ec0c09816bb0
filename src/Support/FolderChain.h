#pragma once

#include "Platform/FileManager.h"
#include "Platform/FileURL.h"

#include <optional>
#include <vector>

namespace marrowick {

/// The folders on the way down into a tree whose contents stand in one list, so that a folder that leads back to one of them
/// ends the way. Folders that lead to each other can be walked in more ways than there is time for: after 1000 folders no
/// more are entered. Main thread only.
class FolderChain {
public:
    /// False when the folder is on the way already, or when it is one too many; otherwise `leave` follows.
    bool enter(FileURL const& folder);

    void leave() { chain_.pop_back(); }

private:
    std::vector<std::optional<FileIdentity>> chain_;
    int entered_ = 0;
};

}
