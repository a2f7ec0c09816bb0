#pragma once

#include <sys/stat.h>

namespace marrowick {

// The first two give a copy what `source` says of the original: the owner where that is allowed, extended attributes and
// access control lists where the file system takes them, the permissions, and at last the times. They return zero, or the
// error number of a failure by which the copy would not be whole. At no moment has anyone but its owner more rights to the
// copy than to the original.

/// For a file or directory, open as `target`; `original` is open on the original.
int copyAttributes(int original, int target, struct stat const& source);

/// For a link, or for an item that cannot be opened without waiting, by its name in an open directory.
int copyAttributesOfSpecial(
    int originalFolder, char const* originalName, int targetFolder, char const* targetName, struct stat const& source);

/// Frees an item just made, no link, from the access that its folder gives to everything made in it.
void dropInheritedAccess(int folder, char const* name);

}
