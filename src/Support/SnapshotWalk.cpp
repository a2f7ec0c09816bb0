#include "Support/SnapshotWalk.h"

#include "Support/Characters.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace marrowick {

std::vector<SnapshotNode> SnapshotWalk::roots(std::vector<TopLevelFolder> const& folders) const
{
    int budget = mostNodes;
    std::vector<SnapshotNode> roots;
    for (auto const& folder : folders) {
        // A folder that is told from the working directory on is no destination.
        bool const isAbsolute = folder.url.path().starts_with('/');
        if (isAbsolute && isValidUTF8(folder.name) && isValidUTF8(folder.url.path()))
            roots.push_back({ folder.name, folder.url.path(), subfolders(folder.url, 1, budget) });
    }
    return roots;
}

std::vector<SnapshotNode> SnapshotWalk::subfolders(FileURL const& of, int depth, int& budget) const
{
    if (depth > deepest || budget < 1)
        return {};
    auto names = shownNames(of);
    auto const prefix = of.path().ends_with('/') ? of.path() : of.path() + '/';
    std::vector<SnapshotNode> nodes;
    nodes.reserve(std::min(names.size(), static_cast<std::size_t>(budget)));
    for (auto& name : names) {
        if (budget <= 0)
            break;
        --budget;
        auto& node = nodes.emplace_back();
        node.path.reserve(prefix.size() + name.size());
        node.path.append(prefix).append(name);
        node.name = std::move(name);
        // Most nodes are of the last level, which needs no locations.
        if (depth < deepest)
            node.children = subfolders(FileURL(node.path), depth + 1, budget);
    }
    return nodes;
}

std::vector<std::string> SnapshotWalk::shownNames(FileURL const& of) const
{
    auto listing = fileManager_.namesOfFolders(of);
    if (!listing)
        return {};
    auto names = std::move(listing).value();
    std::erase_if(names, [](std::string const& name) { return !isValidUTF8(name); });

    auto const prepared = collation_.prepare({ names.begin(), names.end() });
    std::vector<std::size_t> order(names.size());
    std::iota(order.begin(), order.end(), std::size_t { 0 });
    // Equal names keep the listing's order.
    auto const isBefore = [&](std::size_t a, std::size_t b) {
        auto const comparison = prepared->compare(a, b);
        return comparison != 0 ? comparison < 0 : a < b;
    };
    if (order.size() > mostChildren) {
        std::nth_element(order.begin(), order.begin() + mostChildren, order.end(), isBefore);
        order.resize(mostChildren);
    }
    std::sort(order.begin(), order.end(), isBefore);
    std::vector<std::string> sorted;
    sorted.reserve(order.size());
    for (auto const position : order)
        sorted.push_back(std::move(names[position]));
    return sorted;
}

}
