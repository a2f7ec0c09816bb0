#include "Freedesktop/Session/LongNameTrash.h"

#include "Freedesktop/Files/FileDescriptor.h"
#include "Freedesktop/Files/FileErrors.h"
#include "Freedesktop/GLibOwners.h"
#include "Freedesktop/Transfer/Renaming.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace marrowick {

namespace {

constexpr std::string_view noteSuffix = ".trashinfo";
/// For the suffix, the random letters of the file that GIO writes first, and a number where the name is taken.
constexpr std::size_t roomForMore = noteSuffix.size() + 7 + 8;
constexpr int maximumAttempts = 10'000;

/// A trash that stands ready, and the folder that the places noted in it count from; empty for whole paths.
struct TrashFolder {
    FileDescriptor notes;
    FileDescriptor items;
    std::string base;
};

std::size_t longestNameIn(std::string const& folder)
{
    constexpr std::size_t usual = NAME_MAX;
    auto const limit = pathconf(folder.c_str(), _PC_NAME_MAX);
    return std::max(limit > 0 ? std::min(static_cast<std::size_t>(limit), usual) : usual, 2 * roomForMore)
        - roomForMore;
}

FileDescriptor openFolder(int parent, char const* name)
{
    mkdirat(parent, name, S_IRWXU);
    return FileDescriptor(openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

/// Only a folder of this user's own is trusted: the place may be open to all. What is missing is made.
std::optional<TrashFolder> openTrash(std::string const& path, std::string base)
{
    auto const folder = openFolder(AT_FDCWD, path.c_str());
    struct stat status { };
    if (!folder.isOpen() || fstat(folder.get(), &status) != 0 || status.st_uid != geteuid())
        return std::nullopt;
    TrashFolder trash { openFolder(folder.get(), "info"), openFolder(folder.get(), "files"), std::move(base) };
    return trash.notes.isOpen() && trash.items.isOpen() ? std::optional(std::move(trash)) : std::nullopt;
}

std::string joined(std::string const& folder, std::string_view name)
{
    return (folder == "/" ? folder : folder + "/") + std::string(name);
}

/// The folder where the file system that holds `folder` is attached.
std::string rootOfFileSystem(std::string folder, dev_t device)
{
    while (folder != "/") {
        auto parent = folder.substr(0, std::max<std::size_t>(folder.rfind('/'), 1));
        struct stat status { };
        if (stat(parent.c_str(), &status) != 0 || status.st_dev != device)
            break;
        folder = std::move(parent);
    }
    return folder;
}

/// The user's trash on an attached file system: in the folder that all users share where there is one, else beside it.
std::optional<TrashFolder> trashBelow(std::string const& root)
{
    auto const user = std::to_string(geteuid());
    auto const shared = joined(root, ".Trash");
    struct stat status { };
    if (lstat(shared.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && (status.st_mode & S_ISVTX) != 0) {
        if (auto trash = openTrash(joined(shared, user), root))
            return trash;
    }
    return openTrash(joined(root, ".Trash-" + user), root);
}

std::optional<TrashFolder> trashFor(dev_t device, std::string const& folder)
{
    struct stat home { };
    if (stat(g_get_home_dir(), &home) == 0 && home.st_dev == device) {
        g_mkdir_with_parents(g_get_user_data_dir(), S_IRWXU);
        return openTrash(joined(g_get_user_data_dir(), "Trash"), {});
    }
    return trashBelow(rootOfFileSystem(folder, device));
}

/// The beginning of a name; a character of several bytes is not cut.
std::string shortened(std::string_view name, std::size_t longest)
{
    auto length = std::min(name.size(), longest);
    for (int i = 0; i < 3 && length > 0 && length < name.size() && (name[length] & 0xC0) == 0x80; ++i)
        --length;
    return std::string(name.substr(0, length));
}

std::string noteFor(std::string const& path)
{
    GStringOwner const escaped(g_uri_escape_string(path.c_str(), "/", FALSE));
    std::time_t const now = std::time(nullptr);
    std::tm local {};
    localtime_r(&now, &local);
    char date[32] = {};
    std::strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%S", &local);
    return std::string("[Trash Info]\nPath=") + escaped.get() + "\nDeletionDate=" + date + "\n";
}

int writeNote(TrashFolder const& trash, std::string const& name, std::string const& note)
{
    FileDescriptor const file(openat(
        trash.notes.get(), name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!file.isOpen())
        return errno;
    auto const written = write(file.get(), note.data(), note.size());
    if (written == static_cast<ssize_t>(note.size()))
        return 0;
    int const error = written < 0 ? errno : ENOSPC;
    unlinkat(trash.notes.get(), name.c_str(), 0);
    return error;
}

/// Zero, or the system's error number: EEXIST where the trash holds something of this name.
int moveAs(std::string const& name, TrashFolder const& trash, std::string const& path, std::string const& note)
{
    auto const noteName = name + std::string(noteSuffix);
    if (int const error = writeNote(trash, noteName, note))
        return error;
    int const error = renameWithoutReplacing(AT_FDCWD, path.c_str(), trash.items.get(), name.c_str());
    if (error != 0)
        unlinkat(trash.notes.get(), noteName.c_str(), 0);
    return error;
}

int moveToTrash(FileURL const& url)
{
    struct stat status { };
    if (lstat(url.path().c_str(), &status) != 0)
        return errno;
    auto const parent = url.deletingLastPathComponent();
    std::unique_ptr<char, decltype(&std::free)> const folder(realpath(parent.path().c_str(), nullptr), &std::free);
    if (!folder)
        return errno;
    auto const trash = trashFor(status.st_dev, folder.get());
    if (!trash)
        return ENOTSUP;

    auto place = joined(folder.get(), url.lastPathComponent());
    if (!trash->base.empty())
        place.erase(0, joined(trash->base, {}).size());
    auto const note = noteFor(place);
    auto const name = shortened(url.lastPathComponent(), longestNameIn(folder.get()));
    int error = moveAs(name, *trash, url.path(), note);
    for (int attempt = 2; error == EEXIST && attempt < maximumAttempts; ++attempt)
        error = moveAs(name + "." + std::to_string(attempt), *trash, url.path(), note);
    return error;
}

}

bool needsShorterNameInTrash(FileURL const& url)
{
    return url.lastPathComponent().size() > longestNameIn(url.deletingLastPathComponent().path());
}

Result<void> trashUnderShorterName(FileURL const& url)
{
    if (int const error = moveToTrash(url))
        return fileError(error, "Could not move to the Trash", url);
    return {};
}

}
