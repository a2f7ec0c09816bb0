#pragma once

#include "Platform/FileManager.h"

#include <memory>
#include <memory_resource>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

namespace marrowick {

struct SnapshotNode;
using SnapshotNodes = std::pmr::vector<SnapshotNode>;

/// A folder that the extension inside the file manager offers as a destination. All of it lies in one memory, that of the
/// list which it is in: a snapshot is made and thrown away as a whole. A copy lies in memory of its own, but what is moved
/// out of a list stays in the list's.
struct SnapshotNode {
    using allocator_type = std::pmr::polymorphic_allocator<>;

    SnapshotNode(std::string_view name, std::string_view path, SnapshotNodes children = {})
        : name(name)
        , path(path)
        , children(std::move(children), allocator_type())
    {
    }
    SnapshotNode(SnapshotNode const&) = default;
    SnapshotNode(SnapshotNode&&) = default;

    // As lists construct their nodes.
    SnapshotNode(std::allocator_arg_t, allocator_type memory, std::string_view name, std::string_view path)
        : name(name, memory)
        , path(path, memory)
        , children(memory)
    {
    }
    SnapshotNode(std::allocator_arg_t, allocator_type memory, SnapshotNode const& other)
        : name(other.name, memory)
        , path(other.path, memory)
        , children(other.children, memory)
    {
    }
    SnapshotNode(std::allocator_arg_t, allocator_type memory, SnapshotNode&& other)
        : name(std::move(other.name), memory)
        , path(std::move(other.path), memory)
        , children(std::move(other.children), memory)
    {
    }

    SnapshotNode& operator=(SnapshotNode const&) = default;
    SnapshotNode& operator=(SnapshotNode&&) = default;
    ~SnapshotNode() = default;

    /// The title to show.
    std::pmr::string name;
    /// Absolute, without a trailing slash.
    std::pmr::string path;
    SnapshotNodes children;

    friend bool operator==(SnapshotNode const&, SnapshotNode const&) = default;
};

/// The folders of the menu as they were at one moment. All text is UTF-8.
struct Snapshot {
    FileTime generated;
    /// The destination trees, in menu order.
    SnapshotNodes roots;

    /// The paths of all nodes at every depth: the known destinations. Valid as long as the snapshot stays as it is.
    std::unordered_set<std::string_view> allPaths() const;

    friend bool operator==(Snapshot const&, Snapshot const&) = default;
};

}
