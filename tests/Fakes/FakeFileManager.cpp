#include "Fakes/FakeFileManager.h"

#include <utility>

#include <gtest/gtest.h>

namespace marrowick {

FakeFileManager::FakeFileManager(std::unique_ptr<FileManager> real)
    : real_(std::move(real))
{
}

FileManager const* FakeFileManager::asked(FileURL const& url) const
{
    if (!real_)
        ADD_FAILURE() << "a question about the disk that the test did not expect: " << url.path();
    return real_.get();
}

Result<std::vector<ListedItem>> FakeFileManager::contentsOfDirectory(
    FileURL const& directory, ResourceKeys keys, HiddenItems hidden) const
{
    listed.push_back(directory);
    hiddenAskedFor.push_back(hidden);
    if (unreadable.contains(directory))
        return Error { ErrorKind::noPermission, "no permission" };
    if (auto const found = listings.find(directory); found != listings.end())
        return found->second;
    auto const* manager = asked(directory);
    if (!manager)
        return Error { ErrorKind::other, "no file manager" };
    auto contents = manager->contentsOfDirectory(directory, keys, hidden);
    if (contents) {
        for (auto& item : contents.value()) {
            if (auto const found = values.find(item.url); found != values.end())
                item.values = found->second;
        }
    }
    return contents;
}

Result<void> FakeFileManager::visitNames(
    FileURL const& directory, std::function<void(std::string_view)> const& visit) const
{
    listed.push_back(directory);
    if (unreadable.contains(directory))
        return Error { ErrorKind::noPermission, "no permission" };
    if (auto const found = listings.find(directory); found != listings.end()) {
        for (auto const& item : found->second)
            visit(item.url.lastPathComponent());
        return {};
    }
    auto const* manager = asked(directory);
    return manager ? manager->visitNames(directory, visit) : Error { ErrorKind::other, "no file manager" };
}

ResourceValues FakeFileManager::resourceValues(FileURL const& url, ResourceKeys keys) const
{
    if (auto const found = values.find(url); found != values.end())
        return found->second;
    auto const* manager = asked(url);
    return manager ? manager->resourceValues(url, keys) : ResourceValues {};
}

bool FakeFileManager::fileExists(FileURL const& url) const
{
    auto const* manager = asked(url);
    return manager && manager->fileExists(url);
}

bool FakeFileManager::isNameTaken(FileURL const& url) const
{
    auto const* manager = asked(url);
    return manager && manager->isNameTaken(url);
}

std::optional<FileIdentity> FakeFileManager::identity(FileURL const& url) const
{
    auto const* manager = asked(url);
    return manager && !silent.contains(url) ? manager->identity(url) : std::nullopt;
}

Result<void> FakeFileManager::createDirectory(FileURL const& url) const
{
    auto const* manager = asked(url);
    return manager ? manager->createDirectory(url) : Error { ErrorKind::other, "no file manager" };
}

Result<void> FakeFileManager::removeFile(FileURL const& url) const
{
    auto const* manager = asked(url);
    if (irremovable.contains(url))
        return Error { ErrorKind::noPermission, "The file cannot be removed." };
    return manager ? manager->removeFile(url) : Error { ErrorKind::other, "no file manager" };
}

Result<FileURL> FakeFileManager::resolvingAlias(FileURL const& url) const
{
    auto const* manager = asked(url);
    if (silent.contains(url))
        return Error { ErrorKind::other, "The volume does not answer." };
    return manager ? manager->resolvingAlias(url) : Error { ErrorKind::other, "no file manager" };
}

std::vector<FileURL> FakeFileManager::urls(StandardDirectory directory) const
{
    auto const found = standardDirectories.find(directory);
    if (found != standardDirectories.end())
        return found->second;
    ADD_FAILURE() << "a standard directory that the test does not have: " << static_cast<int>(directory);
    return {};
}

FileURL FakeFileManager::homeDirectory() const
{
    if (home)
        return *home;
    ADD_FAILURE() << "the home folder, which the test does not have";
    return {};
}

std::optional<std::vector<FileURL>> FakeFileManager::mountedVolumes() const
{
    return volumes;
}

}
