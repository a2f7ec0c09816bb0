#include "Platform/FileManager.h"

namespace marrowick {

Result<std::vector<std::string>> FileManager::namesOfFolders(FileURL const& directory) const
{
    auto const listing
        = contentsOfDirectory(directory, ResourceKey::isDirectory | ResourceKey::isPackage, HiddenItems::skipped);
    if (!listing)
        return listing.error();
    std::vector<std::string> names;
    for (auto const& item : listing.value()) {
        if (item.values.isDirectory.value_or(false) && !item.values.isPackage.value_or(false))
            names.emplace_back(item.url.lastPathComponent());
    }
    return names;
}

}
