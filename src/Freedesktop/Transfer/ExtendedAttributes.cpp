#include "Freedesktop/Transfer/ExtendedAttributes.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <endian.h>
#include <linux/posix_acl.h>
#include <linux/posix_acl_xattr.h>
#include <sys/xattr.h>

namespace marrowick {

namespace {

/// Reads what `read` offers, which may grow between the question for its size and the answer.
template<typename Read>
int readWhole(Read read, std::string& content)
{
    std::array<char, 4096> first;
    auto size = read(first.data(), first.size());
    if (size >= 0) {
        content.assign(first.data(), static_cast<std::size_t>(size));
        return 0;
    }
    for (int attempt = 0; attempt < 8 && errno == ERANGE; ++attempt) {
        size = read(nullptr, 0);
        if (size < 0)
            break;
        content.resize(static_cast<std::size_t>(size));
        size = read(content.data(), content.size());
        if (size >= 0) {
            content.resize(static_cast<std::size_t>(size));
            return 0;
        }
    }
    return errno;
}

}

ExtendedAttributes::ExtendedAttributes(int folder, char const* name)
    : path_("/proc/self/fd/" + std::to_string(folder) + '/' + name)
{
}

int ExtendedAttributes::list(std::vector<std::string>& names) const
{
    std::string bytes;
    if (int const number = readWhole([&](char* buffer, std::size_t size) { return readList(buffer, size); }, bytes))
        return number;
    for (std::size_t position = 0; position < bytes.size();) {
        names.emplace_back(bytes.c_str() + position);
        position += names.back().size() + 1;
    }
    return 0;
}

int ExtendedAttributes::get(std::string const& name, std::string& value) const
{
    return readWhole([&](char* buffer, std::size_t size) { return readValue(name.c_str(), buffer, size); }, value);
}

int ExtendedAttributes::set(std::string const& name, std::string_view value) const
{
    int const outcome = path_.empty() ? ::fsetxattr(descriptor_, name.c_str(), value.data(), value.size(), 0)
                                      : ::lsetxattr(path_.c_str(), name.c_str(), value.data(), value.size(), 0);
    return outcome == 0 ? 0 : errno;
}

int ExtendedAttributes::remove(std::string const& name) const
{
    int const outcome
        = path_.empty() ? ::fremovexattr(descriptor_, name.c_str()) : ::lremovexattr(path_.c_str(), name.c_str());
    return outcome == 0 ? 0 : errno;
}

ssize_t ExtendedAttributes::readList(char* buffer, std::size_t size) const
{
    return path_.empty() ? ::flistxattr(descriptor_, buffer, size) : ::llistxattr(path_.c_str(), buffer, size);
}

ssize_t ExtendedAttributes::readValue(char const* name, char* buffer, std::size_t size) const
{
    return path_.empty() ? ::fgetxattr(descriptor_, name, buffer, size)
                         : ::lgetxattr(path_.c_str(), name, buffer, size);
}

mode_t groupPermissionsOf(std::string_view accessList)
{
    unsigned permissions = 07;
    for (auto rest = accessList.substr(std::min(accessList.size(), sizeof(posix_acl_xattr_header)));
         rest.size() >= sizeof(posix_acl_xattr_entry); rest.remove_prefix(sizeof(posix_acl_xattr_entry))) {
        posix_acl_xattr_entry entry {};
        std::memcpy(&entry, rest.data(), sizeof entry);
        auto const tag = le16toh(entry.e_tag);
        if (tag == ACL_GROUP_OBJ || tag == ACL_MASK)
            permissions &= le16toh(entry.e_perm);
    }
    return static_cast<mode_t>(permissions << 3);
}

}
