#pragma once

#include "Platform/FileManager.h"

namespace marrowick {

class FreedesktopFileManager final : public FileManager {
public:
    Result<std::vector<ListedItem>> contentsOfDirectory(
        FileURL const& directory, ResourceKeys keys, HiddenItems hidden) const override;
    Result<void> visitNames(
        FileURL const& directory, std::function<void(std::string_view)> const& visit) const override;
    std::unique_ptr<WalkedDirectory> walk(FileURL const& directory) const override;
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
};

}
