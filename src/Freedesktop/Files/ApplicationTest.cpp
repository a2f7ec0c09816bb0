#include "Freedesktop/Files/ApplicationTest.h"

#include "Freedesktop/Files/FileDescriptor.h"
#include "Freedesktop/Files/RegularFile.h"
#include "Platform/FileURL.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <glib.h>
#include <memory>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

namespace marrowick {

namespace {

constexpr std::size_t largestDesktopEntry = 1 << 20;

std::string_view extensionOf(std::string_view path)
{
    return pathExtensionOf(path.substr(path.rfind('/') + 1));
}

std::optional<bool> isApplicationEntry(std::string const& path)
{
    auto const content = readRegularFile(AT_FDCWD, path.c_str(), largestDesktopEntry);
    if (auto const* error = std::get_if<ReadError>(&content))
        return error->failure == ReadFailure::system ? std::nullopt : std::optional(false);

    auto const& text = std::get<std::string>(content);
    std::unique_ptr<GKeyFile, decltype(&g_key_file_unref)> const entry(g_key_file_new(), g_key_file_unref);
    if (!g_key_file_load_from_data(entry.get(), text.data(), text.size(), G_KEY_FILE_NONE, nullptr))
        return false;
    std::unique_ptr<char, decltype(&g_free)> const type(
        g_key_file_get_string(entry.get(), G_KEY_FILE_DESKTOP_GROUP, G_KEY_FILE_DESKTOP_KEY_TYPE, nullptr), g_free);
    return type && std::strcmp(type.get(), G_KEY_FILE_DESKTOP_TYPE_APPLICATION) == 0;
}

/// An AppImage is an ELF program that carries the letters AI and its format's number in the padding of the ELF mark.
std::optional<bool> isExecutableAppImage(std::string const& path)
{
    struct stat status { };
    if (::lstat(path.c_str(), &status) != 0)
        return std::nullopt;
    if (!S_ISREG(status.st_mode) || !(status.st_mode & S_IXUSR))
        return false;
    FileDescriptor const file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY | O_NOFOLLOW));
    char start[10];
    auto const count = file.isOpen() ? ::pread(file.get(), start, sizeof start, 0) : -1;
    if (count < 0)
        return std::nullopt;
    return count == sizeof start && std::memcmp(start, "\177ELF", 4) == 0 && std::memcmp(start + 8, "AI", 2) == 0;
}

std::optional<bool> isApplicationItself(std::string const& path, ItemKind kind)
{
    auto const extension = extensionOf(path);
    if (kind == ItemKind::directory)
        return extension == "app";
    if (kind != ItemKind::regularFile)
        return false;
    if (extension == "desktop")
        return isApplicationEntry(path);
    if (extension.size() == 8 && ::strncasecmp(extension.data(), "AppImage", 8) == 0)
        return isExecutableAppImage(path);
    return false;
}

/// The place that the link at `path` names, when that is told by its text alone: an absolute path to an item that is no
/// link itself. `status` is then that item's. Absent for all other links.
std::optional<std::string> plainTarget(std::string const& path, struct stat& status)
{
    std::string target(256, '\0');
    auto const size = ::readlink(path.c_str(), target.data(), target.size());
    if (size <= 0 || static_cast<std::size_t>(size) == target.size() || target.front() != '/')
        return std::nullopt;
    target.resize(static_cast<std::size_t>(size));
    // A path that ends so names an item by another name than its own.
    if (target.ends_with('/') || target.ends_with("/.") || target.ends_with("/.."))
        return std::nullopt;
    if (::lstat(target.c_str(), &status) != 0 || S_ISLNK(status.st_mode))
        return std::nullopt;
    return target;
}

/// The place to which the link at `path` leads in the end, and the status of the item there.
std::optional<std::string> finalTarget(std::string const& path, struct stat& status)
{
    if (auto target = plainTarget(path, status))
        return target;
    std::unique_ptr<char, decltype(&std::free)> const target(::realpath(path.c_str(), nullptr), std::free);
    if (!target || ::lstat(target.get(), &status) != 0)
        return std::nullopt;
    return target.get();
}

}

std::optional<bool> isApplication(std::string const& path, ItemKind kind)
{
    if (kind != ItemKind::link)
        return isApplicationItself(path, kind);
    struct stat status { };
    auto const target = finalTarget(path, status);
    if (!target)
        return std::nullopt;
    auto const targetKind = S_ISDIR(status.st_mode) ? ItemKind::directory
        : S_ISREG(status.st_mode)                   ? ItemKind::regularFile
                                                    : ItemKind::other;
    return isApplicationItself(*target, targetKind);
}

std::optional<bool> leadsToApplicationDirectory(ItemPlace const& place)
{
    char target[PATH_MAX];
    auto const size = ::readlinkat(place.directory, place.name, target, sizeof target - 1);
    target[std::max<ssize_t>(size, 0)] = '\0';
    std::string_view const path = target;
    auto const name = path.substr(path.rfind('/') + 1);
    bool const isSeenFromHere = path.starts_with('/') || place.directory != AT_FDCWD;
    bool const isItsName = !name.empty() && name != "." && name != "..";
    struct statx status { };
    if (isSeenFromHere && isItsName
        && ::statx(place.directory, target, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, STATX_TYPE, &status) == 0
        && S_ISDIR(status.stx_mode))
        return extensionOf(name) == "app";
    return isApplication(place.path, ItemKind::link);
}

}
