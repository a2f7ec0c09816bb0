#include "Menus/InstalledItems.h"

#include "Platform/Platform.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <string_view>
#include <utility>

namespace marrowick {

std::vector<MenuNode> nodesInOrder(std::vector<InstalledEntry> entries)
{
    assertMainThread();
    std::vector<std::string_view> names;
    names.reserve(entries.size());
    for (auto const& entry : entries)
        names.push_back(entry.sortName);
    auto const prepared = platform().collation->prepare(names);
    std::vector<std::size_t> order(entries.size());
    std::iota(order.begin(), order.end(), std::size_t { 0 });
    std::stable_sort(
        order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return prepared->compare(a, b) < 0; });

    std::vector<MenuNode> nodes;
    nodes.reserve(entries.size());
    for (auto const position : order) {
        auto& entry = entries[position];
        nodes.push_back({ MenuNodeKind::file(std::move(entry.url)), std::move(entry.title), {}, {} });
    }
    return nodes;
}

}
