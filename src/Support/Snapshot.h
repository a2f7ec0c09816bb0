#pragma once

#include "Platform/FileManager.h"

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace marrowick {

/// A folder that the extension inside the file manager offers as a destination.
struct SnapshotNode {
    /// The title to show.
    std::string name;
    /// Absolute, without a trailing slash.
    std::string path;
    std::vector<SnapshotNode> children;

    friend bool operator==(SnapshotNode const&, SnapshotNode const&) = default;
};

/// The folders of the menu as they were at one moment. All text is UTF-8.
struct Snapshot {
    FileTime generated;
    /// The destination trees, in menu order.
    std::vector<SnapshotNode> roots;

    /// The paths of all nodes at every depth: the known destinations. Valid as long as the snapshot stays as it is.
    std::unordered_set<std::string_view> allPaths() const;

    friend bool operator==(Snapshot const&, Snapshot const&) = default;
};

}
