#pragma once

#include "Platform/Collation.h"
#include "Platform/FileManager.h"
#include "Support/Snapshot.h"

#include <memory_resource>
#include <string>
#include <vector>

namespace marrowick {

/// A folder of the top level of the menu.
struct TopLevelFolder {
    std::string name;
    FileURL url;

    friend bool operator==(TopLevelFolder const&, TopLevelFolder const&) = default;
};

/// Finds the folders below those of the menu, up to limits that keep a tree of any size from making the snapshot, or the
/// extension's menus, too large. Any thread.
class SnapshotWalk {
public:
    /// Levels below a root.
    static constexpr int deepest = 3;
    static constexpr std::size_t mostChildren = 150;
    /// Nodes in a whole snapshot, roots not counted.
    static constexpr int mostNodes = 2000;

    /// `memory` holds the nodes that are found, and stands as long as they do. Several threads need one each, unless it is
    /// made for many, as the default is.
    SnapshotWalk(FileManager const& fileManager, Collation const& collation,
        std::pmr::memory_resource* memory = std::pmr::get_default_resource())
        : fileManager_(fileManager)
        , collation_(collation)
        , memory_(memory)
    {
    }

    /// One tree for each folder, which share the allowance of nodes in their order. Folders whose path is not UTF-8 cannot
    /// be named; they and what is below them are left out and cost nothing.
    SnapshotNodes roots(std::vector<TopLevelFolder> const& folders) const;

    /// The visible folders directly in `of` that are no packages, in the user's order, each with its own. `depth` is the
    /// level of these folders, `budget` the number of nodes still allowed.
    SnapshotNodes subfolders(FileURL const& of, int depth, int& budget) const;

private:
    void addSubfolders(FileURL const& of, int depth, int& budget, SnapshotNodes& nodes) const;

    FileManager const& fileManager_;
    Collation const& collation_;
    std::pmr::memory_resource* memory_;
};

}
