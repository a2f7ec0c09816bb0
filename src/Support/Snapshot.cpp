#include "Support/Snapshot.h"

namespace marrowick {

namespace {

void addPaths(SnapshotNodes const& nodes, std::unordered_set<std::string_view>& paths)
{
    for (auto const& node : nodes) {
        paths.insert(node.path);
        addPaths(node.children, paths);
    }
}

}

std::unordered_set<std::string_view> Snapshot::allPaths() const
{
    std::unordered_set<std::string_view> paths;
    addPaths(roots, paths);
    return paths;
}

}
