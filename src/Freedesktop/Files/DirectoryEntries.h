#pragma once

#include <cerrno>
#include <cstddef>
#include <dirent.h>
#include <sys/types.h>

namespace marrowick {

/// Whether a directory entry is the directory itself or the one above it.
inline bool isDotOrDotDot(char const* name)
{
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

/// Calls `visit` with each `dirent64` of the directory open as `directory`, "." and ".." among them, in the file system's
/// order. Returns zero, or the number of the error that ended the reading.
template<typename Visit>
int visitEntries(int directory, Visit visit)
{
    // Large enough that a folder of usual size is read in one call, small enough for the stack of any thread.
    constexpr std::size_t bufferSize = 64 * 1024;
    alignas(dirent64) char buffer[bufferSize];
    char const* const begin = buffer;
    for (;;) {
        auto const count = ::getdents64(directory, buffer, bufferSize);
        if (count < 0 && errno != EINTR)
            return errno;
        if (count == 0)
            return 0;
        for (ssize_t position = 0; position < count;) {
            auto const* entry = reinterpret_cast<dirent64 const*>(begin + position);
            position += entry->d_reclen;
            visit(*entry);
        }
    }
}

}
