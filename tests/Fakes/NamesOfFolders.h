#pragma once

#include "Platform/FileManager.h"

#include <string>
#include <vector>

namespace marrowick {

/// What the directory tells alone, as texts of their own.
inline Result<std::vector<std::string>> namesOfFolders(WalkedDirectory const& directory)
{
    NameList list;
    if (auto const outcome = directory.addNamesOfFolders(list); !outcome)
        return outcome.error();
    std::vector<std::string> names;
    for (std::size_t index = 0; index < list.size(); ++index)
        names.emplace_back(list[index]);
    return names;
}

}
