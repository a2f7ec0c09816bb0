#include "Freedesktop/Transfer/DirectoryNames.h"

#include <cerrno>
#include <cstddef>
#include <dirent.h>
#include <memory>
#include <string_view>

namespace marrowick {

int readNames(int directory, std::vector<std::string>& names)
{
    constexpr std::size_t bufferSize = 32 * 1024;
    std::unique_ptr<char[]> const buffer(new char[bufferSize]);
    for (;;) {
        auto const count = ::getdents64(directory, buffer.get(), bufferSize);
        if (count < 0 && errno != EINTR)
            return errno;
        if (count == 0)
            return 0;
        for (ssize_t position = 0; position < count;) {
            auto const* entry = reinterpret_cast<dirent64 const*>(buffer.get() + position);
            position += entry->d_reclen;
            std::string_view const name = entry->d_name;
            if (name != "." && name != "..")
                names.emplace_back(name);
        }
    }
}

}
