#include "Support/Snapshot.h"

#include <string_view>
#include <unordered_set>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

using Paths = std::unordered_set<std::string_view>;

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

}
}
