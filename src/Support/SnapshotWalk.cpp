#include "Support/SnapshotWalk.h"

#include "Support/Characters.h"

#include <algorithm>
#include <numeric>
#include <string_view>
#include <utility>

namespace marrowick {

std::vector<SnapshotNode> SnapshotWalk::roots(std::vector<TopLevelFolder> const& folders) const
{
    int budget = mostNodes;
    std::vector<SnapshotNode> roots;
    for (auto const& folder : folders) {
        if (isValidUTF8(folder.name) && isValidUTF8(folder.url.path()))
            roots.push_back({ folder.name, folder.url.path(), subfolders(folder.url, 1, budget) });
    }
    return roots;
}

std::vector<SnapshotNode> SnapshotWalk::subfolders(FileURL const& of, int depth, int& budget) const
{
    if (depth > deepest || budget < 1)
        return {};
    std::vector<SnapshotNode> nodes;
    for (auto const& folder : shownFolders(of)) {
        if (budget <= 0)
            break;
        --budget;
        auto& node = nodes.emplace_back();
        node.name = folder.lastPathComponent();
        node.path = folder.path();
        node.children = subfolders(folder, depth + 1, budget);
    }
    return nodes;
}

std::vector<FileURL> SnapshotWalk::shownFolders(FileURL const& of) const
{
    auto listing
        = fileManager_.contentsOfDirectory(of, ResourceKey::isDirectory | ResourceKey::isPackage, HiddenItems::skipped);
    if (!listing)
        return {};
    std::vector<FileURL> folders;
    std::vector<std::string_view> names;
    for (auto& item : listing.value()) {
        if (item.values.isDirectory.value_or(false) && !item.values.isPackage.value_or(false)
            && isValidUTF8(item.url.lastPathComponent()))
            folders.push_back(std::move(item.url));
    }
    for (auto const& folder : folders)
        names.push_back(folder.lastPathComponent());

    auto const prepared = collation_.prepare(names);
    std::vector<std::size_t> order(folders.size());
    std::iota(order.begin(), order.end(), std::size_t { 0 });
    auto const last = order.begin() + static_cast<std::ptrdiff_t>(std::min(order.size(), mostChildren));
    // Equal names keep the listing's order.
    std::partial_sort(order.begin(), last, order.end(), [&](std::size_t a, std::size_t b) {
        auto const comparison = prepared->compare(a, b);
        return comparison != 0 ? comparison < 0 : a < b;
    });
    std::vector<FileURL> sorted;
    for (auto position = order.begin(); position != last; ++position)
        sorted.push_back(std::move(folders[*position]));
    return sorted;
}

}
