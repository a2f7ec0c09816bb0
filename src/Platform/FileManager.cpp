#include "Platform/FileManager.h"

#include <utility>

namespace marrowick {

namespace {

/// Told by whole listings.
class ListedDirectory final : public WalkedDirectory {
public:
    ListedDirectory(FileManager const& fileManager, FileURL url)
        : fileManager_(fileManager)
        , url_(std::move(url))
    {
    }

    Result<void> addNamesOfFolders(NameList& names) const override
    {
        auto const listing = fileManager_.contentsOfDirectory(
            url_, ResourceKey::isDirectory | ResourceKey::isPackage, HiddenItems::skipped);
        if (!listing)
            return listing.error();
        for (auto const& item : listing.value()) {
            if (item.values.isDirectory.value_or(false) && !item.values.isPackage.value_or(false))
                names.add(item.url.lastPathComponent());
        }
        return {};
    }

    std::unique_ptr<WalkedDirectory> folder(std::string_view name) const override
    {
        return std::make_unique<ListedDirectory>(fileManager_, url_.appendingPathComponent(name));
    }

private:
    FileManager const& fileManager_;
    FileURL url_;
};

}

std::unique_ptr<WalkedDirectory> FileManager::walk(FileURL const& directory) const
{
    return std::make_unique<ListedDirectory>(*this, directory);
}

}
