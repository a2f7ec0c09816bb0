#include "BareWalk.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace marrowick::benchmarks {

namespace {

constexpr std::size_t bufferSize = 64 * 1024;

/// Appends the names of the folders in the open folder that are not hidden, each with its zero byte.
std::size_t appendFolders(int directory, std::vector<char>& names)
{
    alignas(dirent64) static char buffer[bufferSize];
    std::size_t folders = 0;
    for (;;) {
        auto const filled = getdents64(directory, buffer, bufferSize);
        if (filled <= 0)
            return folders;
        for (long position = 0; position < filled;) {
            auto const* entry = reinterpret_cast<dirent64 const*>(buffer + position);
            position += entry->d_reclen;
            if (entry->d_type != DT_DIR || entry->d_name[0] == '.')
                continue;
            std::string_view const name(entry->d_name);
            names.insert(names.end(), name.begin(), name.end());
            names.push_back('\0');
            ++folders;
        }
    }
}

}

int BareWalk::count(std::vector<std::string> const& folders) const
{
    int budget = mostNodes_;
    int count = 0;
    for (auto const& folder : folders)
        count += countBelow(AT_FDCWD, folder.c_str(), 1, budget);
    return count;
}

int BareWalk::countBelow(int parent, char const* name, int depth, int& budget) const
{
    if (depth > deepest_ || budget < 1)
        return 0;
    int const directory = openat(parent, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (directory < 0) {
        std::perror(name);
        std::exit(2);
    }
    std::vector<char> names;
    auto const folders = std::min(appendFolders(directory, names), mostChildren_);
    int count = 0;
    char const* next = names.data();
    for (std::size_t folder = 0; folder < folders && budget > 0; ++folder) {
        --budget;
        count += 1 + countBelow(directory, next, depth + 1, budget);
        next += std::string_view(next).size() + 1;
    }
    close(directory);
    return count;
}

}
