#include "Support/FolderChain.h"

#include "Platform/Platform.h"

#include <algorithm>

namespace marrowick {

namespace {

constexpr int mostFolders = 1000;

}

bool FolderChain::enter(FileURL const& folder)
{
    if (entered_ >= mostFolders)
        return false;
    auto const identity = platform().fileManager->identity(folder);
    bool const isOnTheWay = identity && std::any_of(chain_.begin(), chain_.end(), [&](auto const& above) {
        return above && above->isSameItem(*identity);
    });
    if (isOnTheWay)
        return false;
    ++entered_;
    chain_.push_back(identity);
    return true;
}

}
