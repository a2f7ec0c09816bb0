#include "Freedesktop/Files/DirectoryListing.h"

#include "Fakes/TemporaryFolder.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace marrowick {
namespace {

using Names = std::vector<std::string>;

class DirectoryNamesTest : public testing::Test {
protected:
    /// In byte order.
    static Names namesIn(FileURL const& directory)
    {
        Names names;
        auto const outcome = visitNamesInDirectory(directory, [&](std::string_view name) { names.emplace_back(name); });
        EXPECT_TRUE(outcome) << (outcome ? "" : outcome.error().message);
        std::sort(names.begin(), names.end());
        return names;
    }
    static std::optional<ErrorKind> failure(FileURL const& directory)
    {
        auto const outcome = visitNamesInDirectory(directory, [](std::string_view) {});
        return outcome ? std::nullopt : std::optional(outcome.error().kind);
    }

    TemporaryFolder folder;
};

TEST_F(DirectoryNamesTest, EveryItemIsVisitedOnceByItsBytes)
{
    EXPECT_EQ(namesIn(folder.url()), Names {});
    folder.file("two\nlines");
    folder.folder("folder/inside");
    folder.link("\xFF", "nowhere");
    folder.fifo(std::string(255, 'x'));
    EXPECT_EQ(namesIn(folder.url()), (Names { "folder", "two\nlines", std::string(255, 'x'), "\xFF" }));
}

TEST_F(DirectoryNamesTest, HiddenItemsAreVisitedAndTheFolderItselfIsNot)
{
    folder.file(".hidden", "named\n");
    folder.file("named");
    folder.file("...");
    folder.file("..a");
    EXPECT_EQ(namesIn(folder.url()), (Names { "...", "..a", ".hidden", "named" }));
}

TEST_F(DirectoryNamesTest, ALinkAtTheFolderItselfIsFollowed)
{
    folder.folder("folder/inside");
    EXPECT_EQ(namesIn(folder.link("link", "folder")), Names { "inside" });
}

TEST_F(DirectoryNamesTest, AFolderLargerThanOneReadIsWhole)
{
    Names expected;
    for (int number = 0; number < 5000; ++number) {
        expected.push_back(std::to_string(number) + std::string(static_cast<std::size_t>(number) % 200, '-'));
        ASSERT_EQ(::symlink("x", (folder / expected.back()).path().c_str()), 0);
    }
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(namesIn(folder.url()), expected);
}

TEST_F(DirectoryNamesTest, WhatCannotBeListedSaysWhy)
{
    EXPECT_EQ(failure(folder / "missing"), ErrorKind::notFound);
    EXPECT_EQ(failure(FileURL()), ErrorKind::notFound);
    EXPECT_EQ(failure(FileURL(folder.url().path() + std::string("\0x", 2))), ErrorKind::notFound);
    EXPECT_EQ(failure(folder.link("loop", "loop")), ErrorKind::other);
    EXPECT_TRUE(failure(folder.file("file")).has_value());
    EXPECT_TRUE(failure(folder.fifo("fifo")).has_value());
}

}
}
