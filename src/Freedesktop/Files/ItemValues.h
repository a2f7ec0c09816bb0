#pragma once

#include "Freedesktop/Files/FolderWays.h"
#include "Platform/FileManager.h"

#include <optional>
#include <string>
#include <string_view>

namespace marrowick {

/// What kind of item a name stands for; the name itself, without following a link.
enum class ItemKind : std::uint8_t {
    unknown,
    regularFile,
    directory,
    link,
    other,
};

/// The kind that a directory entry of type `DT_...` tells.
ItemKind itemKindOfEntry(unsigned char entryType);

/// Whether a directory of this name is one that people take for one document or program.
bool isPackageName(std::string_view name);

/// Where an item is: `name` as seen from `directory` (or AT_FDCWD), and its whole path.
struct ItemPlace {
    int directory;
    char const* name;
    std::string const& path;
    /// Of the folder that holds the item; null where no way to its items is doubtful.
    FolderWays const* ways = nullptr;
};

/// The values of an item that `keys` name. `kind` is what is known of it beforehand; the disk is asked only for what
/// that does not tell. What lies in a doubtful volume and is not told in time is absent.
ResourceValues readResourceValues(ItemPlace const& place, ItemKind kind, ResourceKeys keys);

}
