#include "Fakes/NoDefaultMemory.h"
#include "Support/Snapshot.h"

#include <algorithm>
#include <memory_resource>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

using Paths = std::unordered_set<std::string_view>;

/// Whether all of the node is in that memory, with all that is below it.
bool liesIn(std::pmr::memory_resource* memory, SnapshotNode const& node)
{
    return node.name.get_allocator().resource() == memory && node.path.get_allocator().resource() == memory
        && node.children.get_allocator().resource() == memory
        && std::all_of(node.children.begin(), node.children.end(),
            [&](SnapshotNode const& child) { return liesIn(memory, child); });
}

TEST(SnapshotTest, AllPathsAreThoseOfEveryNodeAtEveryDepth)
{
    Snapshot const snapshot { {},
        { { "A", "/A", { { "b", "/A/b", { { "c", "/A/b/c", { { "d", "/A/b/c/d", {} } } } } }, { "e", "/A/e", {} } } },
            { "B", "/B", {} }, { "B again", "/B", {} } } };
    EXPECT_EQ(snapshot.allPaths(), (Paths { "/A", "/A/b", "/A/b/c", "/A/b/c/d", "/A/e", "/B" }));
}

TEST(SnapshotTest, WithoutRootsThereAreNoPaths)
{
    EXPECT_EQ(Snapshot {}.allPaths(), Paths {});
}

TEST(SnapshotTest, APathIsKnownByItsExactBytesOnly)
{
    Snapshot const snapshot { {}, { { "A", "/A\u0301b", {} } } };
    auto const paths = snapshot.allPaths();
    EXPECT_TRUE(paths.contains("/A\u0301b"));
    EXPECT_FALSE(paths.contains("/A\u0301b/"));
    EXPECT_FALSE(paths.contains("/a\u0301b"));
    EXPECT_FALSE(paths.contains("/\u00c1b"));
    EXPECT_FALSE(paths.contains("A\u0301b"));
}

TEST(SnapshotTest, ANodeLiesInTheMemoryOfItsListWithAllThatIsBelow)
{
    std::string const name(100, 'n');
    SnapshotNode const outside { name, name, { { name, name, {} } } };
    SnapshotNode moved = outside;
    std::pmr::monotonic_buffer_resource memory(std::pmr::new_delete_resource());
    {
        NoDefaultMemory const nowhereElse;
        SnapshotNodes list(&memory);
        list.emplace_back(name, name).children.push_back(outside);
        list.push_back(std::move(moved));
        for (int growing = 0; growing < 10; ++growing)
            list.push_back(list.front());
        EXPECT_EQ(list[0].children[0], outside);
        EXPECT_EQ(list[1], outside);
        EXPECT_EQ(list.back(), list.front());
        for (auto const& node : list)
            EXPECT_TRUE(liesIn(&memory, node));
    }
}

TEST(SnapshotTest, ANodeOfItsOwnTakesNoOthersMemory)
{
    std::string const name(100, 'n');
    std::optional<SnapshotNode> node;
    {
        std::pmr::monotonic_buffer_resource memory;
        SnapshotNodes list(&memory);
        list.emplace_back(name, name);
        node.emplace("A", "/A", std::move(list));
    }
    EXPECT_EQ(node, (SnapshotNode { "A", "/A", { { name, name, {} } } }));
    EXPECT_TRUE(liesIn(std::pmr::get_default_resource(), *node));
}

TEST(SnapshotTest, ACopyOfANodeOutlivesTheMemoryOfItsList)
{
    std::string const name(100, 'n');
    SnapshotNodes copies;
    std::optional<SnapshotNode> copy;
    {
        std::pmr::monotonic_buffer_resource memory;
        SnapshotNodes list(&memory);
        list.emplace_back(name, name).children.emplace_back(name, name);
        copies = list;
        copies.push_back(list.front());
        copy = list.front();
        copies.push_back(std::move(list.front()));
    }
    SnapshotNode const expected { name, name, { { name, name, {} } } };
    EXPECT_EQ(copies, (SnapshotNodes { expected, expected, expected }));
    EXPECT_EQ(copy, expected);
    EXPECT_TRUE(liesIn(std::pmr::get_default_resource(), *copy));
    for (auto const& node : copies)
        EXPECT_TRUE(liesIn(std::pmr::get_default_resource(), node));
}

}
}
