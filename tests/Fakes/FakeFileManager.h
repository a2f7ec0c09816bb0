#pragma once

#include "Platform/FileManager.h"

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <vector>

namespace marrowick {

/// Passes questions on to a real file manager, and answers by itself where a test describes what a disk cannot be
/// brought to. A question that nobody can answer fails the test. Main thread only.
class FakeFileManager : public FileManager {
public:
    /// `real` may be null.
    explicit FakeFileManager(std::unique_ptr<FileManager> real);

    Result<std::vector<ListedItem>> contentsOfDirectory(
        FileURL const& directory, ResourceKeys keys, HiddenItems hidden) const override;
    Result<void> visitNames(
        FileURL const& directory, std::function<void(std::string_view)> const& visit) const override;
    ResourceValues resourceValues(FileURL const& url, ResourceKeys keys) const override;
    bool fileExists(FileURL const& url) const override;
    bool isNameTaken(FileURL const& url) const override;
    std::optional<FileIdentity> identity(FileURL const& url) const override;
    Result<void> createDirectory(FileURL const& url) const override;
    Result<void> removeFile(FileURL const& url) const override;
    Result<FileURL> resolvingAlias(FileURL const& url) const override;
    std::vector<FileURL> urls(StandardDirectory directory) const override;
    FileURL homeDirectory() const override;
    std::optional<std::vector<FileURL>> mountedVolumes() const override;

    /// What a directory lists, instead of what it does.
    std::map<FileURL, std::vector<ListedItem>> listings;
    /// All that can be read of an item.
    std::map<FileURL, ResourceValues> values;
    /// Directories that nobody may list.
    std::set<FileURL> unreadable;
    std::map<StandardDirectory, std::vector<FileURL>> standardDirectories;
    std::optional<std::vector<FileURL>> volumes;
    std::optional<FileURL> home;

    /// Items of which is not told in time which ones they are or where they lead.
    std::set<FileURL> silent;
    /// Files that stay where they are, whatever is tried.
    std::set<FileURL> irremovable;

    /// The directories whose contents were asked for, in order.
    mutable std::vector<FileURL> listed;
    /// What was asked about hidden items each time.
    mutable std::vector<HiddenItems> hiddenAskedFor;

private:
    /// Null, after failing the test, when there is no real file manager.
    FileManager const* asked(FileURL const& url) const;

    std::unique_ptr<FileManager> real_;
};

}
