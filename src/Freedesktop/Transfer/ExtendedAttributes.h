#pragma once

#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace marrowick {

/// The extended attributes of one item, by descriptor or, for what cannot be opened, by path without following it. Calls
/// return zero or the system's error number.
class ExtendedAttributes {
public:
    explicit ExtendedAttributes(int descriptor)
        : descriptor_(descriptor)
    {
    }
    /// The item `name` of the directory open as `folder`.
    ExtendedAttributes(int folder, char const* name);

    int list(std::vector<std::string>& names) const;
    int get(std::string const& name, std::string& value) const;
    int set(std::string const& name, std::string_view value) const;
    int remove(std::string const& name) const;

private:
    ssize_t readList(char* buffer, std::size_t size) const;
    ssize_t readValue(char const* name, char* buffer, std::size_t size) const;

    int descriptor_ = -1;
    std::string path_;
};

/// An item's access control list, and the one that a directory gives to what is made in it.
constexpr char accessListName[] = "system.posix_acl_access";
constexpr char defaultListName[] = "system.posix_acl_default";

/// What an access control list grants to the item's own group, as permission bits of a group. All where it does not say.
mode_t groupPermissionsOf(std::string_view accessList);

}
