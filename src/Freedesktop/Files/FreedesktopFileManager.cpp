#include "Freedesktop/Files/FreedesktopFileManager.h"

#include "Freedesktop/Files/DirectoryListing.h"
#include "Freedesktop/Files/FileErrors.h"
#include "Freedesktop/Files/FileTimes.h"
#include "Freedesktop/Files/FolderWays.h"
#include "Freedesktop/Files/ItemValues.h"
#include "Freedesktop/Files/MountedVolumes.h"
#include "Freedesktop/Files/StandardDirectories.h"
#include "Freedesktop/Files/TimelyAnswers.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <type_traits>
#include <unistd.h>
#include <utility>
#include <variant>

namespace marrowick {

namespace {

/// What `question`, a function of a path, finds out about an item, links followed; absent when a volume that would have to
/// tell does not answer in time.
template<typename Question>
auto answerAbout(FileURL const& url, Question question) -> std::optional<std::invoke_result_t<Question, std::string>>
{
    auto const volume = volumeEntered(url.path());
    if (!volume)
        return question(url.path());
    return answerInTime(*volume, patienceForItem, [question, path = url.path()] { return question(path); });
}

std::optional<struct stat> statusOfPath(std::string const& path)
{
    struct stat status { };
    if (::fstatat(AT_FDCWD, path.c_str(), &status, AT_NO_AUTOMOUNT) != 0)
        return std::nullopt;
    return status;
}

/// The item's status, links followed; absent when there is none, and when that is not told in time.
std::optional<struct stat> statusOf(FileURL const& url)
{
    return isSystemPath(url) ? answerAbout(url, statusOfPath).value_or(std::nullopt) : std::nullopt;
}

/// Where the path leads in the end, or the error's number.
std::variant<std::string, int> resolvedPath(std::string const& path)
{
    std::unique_ptr<char, decltype(&std::free)> const resolved(::realpath(path.c_str(), nullptr), std::free);
    if (!resolved)
        return errno;
    return std::string(resolved.get());
}

/// Absent when that is not told in time.
std::optional<bool> isDirectory(FileURL const& url)
{
    auto const status = answerAbout(url, statusOfPath);
    return status ? std::optional(*status && S_ISDIR((*status)->st_mode)) : std::nullopt;
}

/// The start of `path` that ends before the slash at or after `position`, and the whole path when there is none.
std::size_t endOfComponent(std::string const& path, std::size_t position)
{
    auto const slash = path.find('/', path.find_first_not_of('/', position));
    return slash == std::string::npos ? path.size() : slash;
}

}

Result<std::vector<ListedItem>> FreedesktopFileManager::contentsOfDirectory(
    FileURL const& directory, ResourceKeys keys, HiddenItems hidden) const
{
    return listDirectory(directory, keys, hidden);
}

Result<void> FreedesktopFileManager::visitNames(
    FileURL const& directory, std::function<void(std::string_view)> const& visit) const
{
    return visitNamesInDirectory(directory, visit);
}

std::unique_ptr<WalkedDirectory> FreedesktopFileManager::walk(FileURL const& directory) const
{
    return walkDirectory(directory);
}

ResourceValues FreedesktopFileManager::resourceValues(FileURL const& url, ResourceKeys keys) const
{
    if (!isSystemPath(url))
        return {};
    auto const ways = FolderWays::around(url.path());
    return readResourceValues({ AT_FDCWD, url.path().c_str(), url.path(), ways.get() }, ItemKind::unknown, keys);
}

bool FreedesktopFileManager::fileExists(FileURL const& url) const
{
    return statusOf(url).has_value();
}

bool FreedesktopFileManager::isNameTaken(FileURL const& url) const
{
    if (!isSystemPath(url))
        return false;
    if (auto const ways = FolderWays::around(url.path()); ways && ways->volumeAt(url.lastPathComponent()))
        return true;
    struct stat status { };
    return ::fstatat(AT_FDCWD, url.path().c_str(), &status, AT_NO_AUTOMOUNT | AT_SYMLINK_NOFOLLOW) == 0;
}

std::optional<FileIdentity> FreedesktopFileManager::identity(FileURL const& url) const
{
    auto const status = statusOf(url);
    if (!status)
        return std::nullopt;
    return FileIdentity { .device = status->st_dev,
        .inode = status->st_ino,
        .size = static_cast<std::uint64_t>(status->st_size),
        .modified = fileTime(status->st_mtim) };
}

Result<void> FreedesktopFileManager::createDirectory(FileURL const& url) const
{
    constexpr char what[] = "Could not create the folder";
    auto const& path = url.path();
    if (path.empty() || !isSystemPath(url))
        return fileError(ENOENT, what, url);
    if (isDirectory(url).value_or(false))
        return {};
    std::size_t end = 0;
    do {
        end = endOfComponent(path, end);
        FileURL const level(path.substr(0, end));
        if (::mkdir(level.path().c_str(), 0777) == 0)
            continue;
        int const number = errno;
        auto const stands = isDirectory(level);
        if (!stands.value_or(false))
            return fileError(stands ? number : ETIMEDOUT, what, url);
    } while (end < path.size());
    return {};
}

Result<void> FreedesktopFileManager::removeFile(FileURL const& url) const
{
    constexpr char what[] = "Could not remove";
    if (!isSystemPath(url))
        return fileError(ENOENT, what, url);
    return ::unlink(url.path().c_str()) == 0 ? Result<void>() : fileError(errno, what, url);
}

Result<FileURL> FreedesktopFileManager::resolvingAlias(FileURL const& url) const
{
    constexpr char what[] = "Could not resolve";
    if (!isSystemPath(url))
        return fileError(ENOENT, what, url);
    auto resolved = answerAbout(url, resolvedPath).value_or(ETIMEDOUT);
    if (auto const* number = std::get_if<int>(&resolved))
        return fileError(*number, what, url);
    return FileURL(std::get<std::string>(std::move(resolved)));
}

std::vector<FileURL> FreedesktopFileManager::urls(StandardDirectory directory) const
{
    return { FileURL(standardDirectoryPath(directory), true) };
}

FileURL FreedesktopFileManager::homeDirectory() const
{
    return FileURL(homePath(), true);
}

std::optional<std::vector<FileURL>> FreedesktopFileManager::mountedVolumes() const
{
    std::vector<FileURL> urls;
    for (auto& path : shownVolumes(currentMounts(), currentViewer()))
        urls.emplace_back(std::move(path), true);
    return urls;
}

}
