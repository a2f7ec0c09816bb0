#pragma once

#include "Platform/FileManager.h"

#include <vector>

namespace marrowick {

/// The name of the file by which a folder hides items that have no leading dot.
inline constexpr char hiddenNamesFile[] = ".hidden";

/// Removes the items that the ".hidden" file of the open `directory` names, one name on each line.
void removeHiddenNames(int directory, std::vector<ListedItem>& items);

}
