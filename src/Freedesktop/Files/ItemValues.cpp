#include "Freedesktop/Files/ItemValues.h"

#include "Freedesktop/Files/ApplicationTest.h"
#include "Freedesktop/Files/FileTimes.h"
#include "Freedesktop/Files/TimelyAnswers.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>

namespace marrowick {

namespace {

ItemKind itemKindOfMode(unsigned mode)
{
    if (S_ISREG(mode))
        return ItemKind::regularFile;
    if (S_ISDIR(mode))
        return ItemKind::directory;
    return S_ISLNK(mode) ? ItemKind::link : ItemKind::other;
}

/// An item that is asked for by itself has its whole path in the place of its name.
std::string_view nameOf(ItemPlace const& place)
{
    std::string_view const path(place.name);
    return path.substr(path.rfind('/') + 1);
}

std::optional<bool> leadsToDirectory(ItemPlace const& place)
{
    struct statx target { };
    if (::statx(place.directory, place.name, AT_NO_AUTOMOUNT, STATX_TYPE, &target) == 0)
        return S_ISDIR(target.stx_mode);
    if (errno == ENOENT || errno == ENOTDIR || errno == ELOOP)
        return false;
    return std::nullopt;
}

ItemKind readKind(ItemPlace const& place)
{
    struct statx status { };
    int const flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT;
    bool const isRead = ::statx(place.directory, place.name, flags, STATX_TYPE, &status) == 0;
    return isRead ? itemKindOfMode(status.stx_mode) : ItemKind::unknown;
}

/// The values, however long the disk takes.
ResourceValues readFromDisk(ItemPlace const& place, ItemKind kind, ResourceKeys keys)
{
    ResourceValues values;
    bool const wantsDate = keys.contains(ResourceKey::contentModificationDate)
        || (keys.contains(ResourceKey::fileModificationDate) && kind != ItemKind::directory);
    bool const wantsSize = keys.contains(ResourceKey::fileSize);
    if (wantsDate || wantsSize || kind == ItemKind::unknown) {
        unsigned const mask = (wantsDate ? STATX_MTIME : 0U) | (wantsSize ? STATX_SIZE : 0U)
            | (kind == ItemKind::unknown ? STATX_TYPE : 0U);
        struct statx status { };
        bool const isRead
            = ::statx(place.directory, place.name, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, mask, &status) == 0;
        if (isRead && wantsDate && (status.stx_mask & STATX_MTIME))
            values.contentModificationDate = fileTime(status.stx_mtime);
        if (isRead && wantsSize && (status.stx_mask & STATX_SIZE))
            values.fileSize = status.stx_size;
        if (isRead && kind == ItemKind::unknown)
            kind = itemKindOfMode(status.stx_mode);
    }
    if (kind == ItemKind::unknown)
        return values;

    if (keys.contains(ResourceKey::isDirectory))
        values.isDirectory = kind == ItemKind::directory;
    if (keys.contains(ResourceKey::isRegularFile))
        values.isRegularFile = kind == ItemKind::regularFile;
    if (keys.contains(ResourceKey::isPackage))
        values.isPackage = kind == ItemKind::directory && isPackageName(nameOf(place));
    if (keys.contains(ResourceKey::isAliasFile))
        values.isAliasFile = kind == ItemKind::link;
    if (kind == ItemKind::link
        && (keys.contains(ResourceKey::aliasTargetIsDirectory) || keys.contains(ResourceKey::directoryIsApplication)))
        values.aliasTargetIsDirectory = leadsToDirectory(place);
    if (keys.contains(ResourceKey::isApplication)
        || (keys.contains(ResourceKey::directoryIsApplication) && kind == ItemKind::directory))
        values.isApplication = isApplication(place.path, kind);
    else if (keys.contains(ResourceKey::directoryIsApplication) && values.aliasTargetIsDirectory.value_or(false))
        values.isApplication = leadsToApplicationDirectory(place);
    return values;
}

constexpr auto keysOfTarget
    = ResourceKey::aliasTargetIsDirectory | ResourceKey::directoryIsApplication | ResourceKey::isApplication;

constexpr auto keysOfStatus
    = ResourceKey::contentModificationDate | ResourceKey::fileModificationDate | ResourceKey::fileSize;

/// The volume that has to be asked for the values and may keep silent, where some ways are doubtful.
std::optional<std::string> doubtfulVolume(ItemPlace const& place, ItemKind kind, ResourceKeys keys)
{
    bool const mayBeLink = kind == ItemKind::link || kind == ItemKind::unknown;
    if (mayBeLink && keys.containsAny(keysOfTarget))
        return place.ways->volumeBehind(nameOf(place));
    bool const isToldByKind = kind == ItemKind::directory && !keys.containsAny(keysOfStatus);
    return isToldByKind ? std::nullopt : place.ways->volumeAt(nameOf(place));
}

/// What is known of an item whose volume does not answer.
ResourceValues valuesWithoutVolume(ItemPlace const& place, ItemKind kind, ResourceKeys keys)
{
    if (!place.ways->volumeAt(nameOf(place)))
        return readFromDisk(place, kind, keys.without(keysOfTarget));
    return kind == ItemKind::directory ? readFromDisk(place, kind, keys.without(keysOfStatus)) : ResourceValues();
}

}

bool isPackageName(std::string_view name)
{
    static constexpr std::array<std::string_view, 6> extensions { "app", "prefPane", "bundle", "framework", "plugin",
        "rtfd" };
    auto const extension = pathExtensionOf(name);
    return std::find(extensions.begin(), extensions.end(), extension) != extensions.end();
}

ItemKind itemKindOfEntry(unsigned char entryType)
{
    switch (entryType) {
    case DT_UNKNOWN:
        return ItemKind::unknown;
    case DT_REG:
        return ItemKind::regularFile;
    case DT_DIR:
        return ItemKind::directory;
    case DT_LNK:
        return ItemKind::link;
    }
    return ItemKind::other;
}

ResourceValues readResourceValues(ItemPlace const& place, ItemKind kind, ResourceKeys keys)
{
    if (!place.ways)
        return readFromDisk(place, kind, keys);
    if (kind == ItemKind::unknown && !place.ways->volumeAt(nameOf(place)))
        kind = readKind(place);
    auto const volume = doubtfulVolume(place, kind, keys);
    if (!volume)
        return readFromDisk(place, kind, keys);
    auto values = answerInTime(*volume, patienceForItem, [path = place.ways->pathOf(nameOf(place)), kind, keys] {
        return readFromDisk({ AT_FDCWD, path.c_str(), path }, kind, keys);
    });
    return values ? *values : valuesWithoutVolume(place, kind, keys);
}

}
