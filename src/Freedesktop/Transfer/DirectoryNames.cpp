#include "Freedesktop/Transfer/DirectoryNames.h"

#include "Freedesktop/Files/DirectoryEntries.h"

namespace marrowick {

int readNames(int directory, std::vector<std::string>& names)
{
    return visitEntries(directory, [&](dirent64 const& entry) {
        if (!isDotOrDotDot(entry.d_name))
            names.emplace_back(entry.d_name);
    });
}

}
