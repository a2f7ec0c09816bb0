#include "Menus/RecentItemsMenuBuilder.h"

#include "Menus/GeneratedMenu.h"
#include "Platform/Platform.h"

#include <algorithm>
#include <string>
#include <utility>

namespace marrowick {

namespace {

constexpr std::size_t mostEntries = 15;

/// Earlier than every date that a file can have.
constexpr auto distantPast = FileTime::min();

struct Candidate {
    FileURL url;
    FileTime modified;
};

void appendFilesOf(FileURL const& folder, std::vector<Candidate>& candidates)
{
    auto listing = platform().fileManager->contentsOfDirectory(
        folder, ResourceKey::isDirectory | ResourceKey::fileModificationDate, HiddenItems::skipped);
    if (!listing)
        return;
    for (auto& [url, values] : listing.value()) {
        if (!values.isDirectory.value_or(false))
            candidates.push_back({ std::move(url), values.contentModificationDate.value_or(distantPast) });
    }
}

}

std::shared_ptr<MWMenu> RecentItemsMenuBuilder::build()
{
    return makeGeneratedMenu("Recent Items", [] {
        std::vector<MenuNode> nodes;
        for (auto& url : recentFiles(mostEntries)) {
            std::string name(url.lastPathComponent());
            nodes.push_back({ MenuNodeKind::file(std::move(url)), std::move(name), {}, {} });
        }
        return nodes;
    });
}

std::vector<FileURL> RecentItemsMenuBuilder::recentFiles(std::size_t limit)
{
    std::vector<Candidate> candidates;
    for (auto const directory :
        { StandardDirectory::desktop, StandardDirectory::documents, StandardDirectory::downloads }) {
        auto const folders = platform().fileManager->urls(directory);
        if (!folders.empty())
            appendFilesOf(folders.front(), candidates);
    }
    std::stable_sort(candidates.begin(), candidates.end(),
        [](Candidate const& a, Candidate const& b) { return a.modified > b.modified; });
    candidates.resize(std::min(limit, candidates.size()));
    std::vector<FileURL> files;
    files.reserve(candidates.size());
    for (auto& candidate : candidates)
        files.push_back(std::move(candidate.url));
    return files;
}

}
