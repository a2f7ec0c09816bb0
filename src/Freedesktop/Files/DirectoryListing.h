#pragma once

#include "Platform/FileManager.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace marrowick {

/// `FileManager::contentsOfDirectory` on the system's own directory entries, which keep the names' bytes and tell most
/// items' kind without a further question.
Result<std::vector<ListedItem>> listDirectory(FileURL const& directory, ResourceKeys keys, HiddenItems hidden);

/// `FileManager::walk`. Each directory of the tree is open while it stands.
std::unique_ptr<WalkedDirectory> walkDirectory(FileURL const& directory);

/// `FileManager::visitNames`.
Result<void> visitNamesInDirectory(FileURL const& directory, std::function<void(std::string_view)> const& visit);

}
