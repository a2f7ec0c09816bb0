#pragma once

#include "Platform/FileManager.h"

namespace marrowick {

/// `FileManager::contentsOfDirectory` on the system's own directory entries, which keep the names' bytes and tell most
/// items' kind without a further question.
Result<std::vector<ListedItem>> listDirectory(FileURL const& directory, ResourceKeys keys, HiddenItems hidden);

}
