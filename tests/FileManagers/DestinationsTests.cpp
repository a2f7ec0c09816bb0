#include "Shared/Destinations.h"

#include "Fakes/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <string>

namespace marrowick::companion {
namespace {

std::string snapshotText(std::string const& name)
{
    return R"({"generated":"2026-11-16T00:44:41Z","roots":[{"name":")" + name + R"(","path":"\/x","children":[]}]})";
}

class DestinationsTest : public testing::Test {
protected:
    /// As the program publishes: under another name, then renamed.
    void publish(std::string const& content) const
    {
        auto const unfinished = folder_.file("unfinished", content);
        ASSERT_EQ(std::rename(unfinished.path().c_str(), (folder_ / "menu-snapshot.json").path().c_str()), 0);
    }

    /// The name of the only root; empty without a snapshot.
    std::string currentName()
    {
        auto const snapshot = destinations_.current();
        return snapshot ? std::string(snapshot->roots.at(0).name) : std::string();
    }

    TemporaryFolder folder_;
    Destinations destinations_ { folder_.url().path() };
};

}

TEST_F(DestinationsTest, AbsentWithoutASnapshot)
{
    EXPECT_EQ(destinations_.current(), nullptr);
    EXPECT_EQ(Destinations("/nowhere/at/all").current(), nullptr);
}

TEST_F(DestinationsTest, CurrentAfterEachChange)
{
    publish(snapshotText("one"));
    EXPECT_EQ(currentName(), "one");
    publish(snapshotText("two"));
    EXPECT_EQ(currentName(), "two");
    folder_.remove("menu-snapshot.json");
    EXPECT_EQ(destinations_.current(), nullptr);
    publish(snapshotText("six"));
    EXPECT_EQ(currentName(), "six");
}

TEST_F(DestinationsTest, AnUnchangedFileIsNotReadAgain)
{
    publish(snapshotText("one"));
    auto const first = destinations_.current();
    ASSERT_NE(first, nullptr);
    for (int i = 0; i < 100; ++i)
        ASSERT_EQ(destinations_.current(), first);
}

TEST_F(DestinationsTest, AFileThatIsNoSnapshotGivesNone)
{
    for (std::string const content : { "", "{", "[]", R"({"roots":[]})", "\xff" }) {
        publish(content);
        EXPECT_EQ(destinations_.current(), nullptr) << testing::PrintToString(content);
    }
    publish(snapshotText("broken \xff"));
    EXPECT_EQ(destinations_.current(), nullptr);
    publish(snapshotText("one"));
    EXPECT_EQ(currentName(), "one");
}

TEST_F(DestinationsTest, WhatIsNoRegularFileIsNotOpened)
{
    folder_.fifo("menu-snapshot.json");
    EXPECT_EQ(destinations_.current(), nullptr);
    folder_.remove("menu-snapshot.json");
    folder_.folder("menu-snapshot.json");
    EXPECT_EQ(destinations_.current(), nullptr);
}

TEST_F(DestinationsTest, AFileThatIsTooLargeIsNotRead)
{
    publish(snapshotText("one"));
    EXPECT_EQ(currentName(), "one");
    auto const path = (folder_ / "menu-snapshot.json").path();
    ASSERT_EQ(truncate(path.c_str(), off_t { 65 } * 1024 * 1024), 0);
    EXPECT_EQ(destinations_.current(), nullptr);
}

TEST_F(DestinationsTest, AnEarlierSnapshotStaysWhileItIsHeld)
{
    publish(snapshotText("one"));
    auto const held = destinations_.current();
    publish(snapshotText("two"));
    EXPECT_EQ(currentName(), "two");
    EXPECT_EQ(held->roots.at(0).name, "one");
}

}
