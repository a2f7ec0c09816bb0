#include "Support/FolderChain.h"

#include "Platform/Platform.h"

#include <algorithm>

namespace marrowick {

bool FolderChain::enter(FileURL const& folder)
{
    auto const identity = platform().fileManager->identity(folder);
    bool const isOnTheWay = identity && std::any_of(chain_.begin(), chain_.end(), [&](auto const& above) {
        return above && above->isSameItem(*identity);
    });
    if (!isOnTheWay)
        chain_.push_back(identity);
    return !isOnTheWay;
}

}
