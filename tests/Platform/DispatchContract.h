#pragma once

#include "Platform/Dispatch.h"

#include <functional>
#include <gtest/gtest.h>

namespace marrowick::contract {

/// A folder that can be watched, and what happens to it.
struct WatchedFolder {
    FileURL url;
    std::function<void()> addEntry;
    std::function<void()> remove;
    /// Lets everything arrive that is on its way.
    std::function<void()> settle;
    /// Runs something while the program is held back, as by an alert.
    std::function<void(std::function<void()> const&)> whileHeld;
};

/// What every dispatch does for those that watch a folder. The folder is gone afterwards.
inline void directoryWatchKeepsItsPromises(Dispatch& dispatch, WatchedFolder const& folder)
{
    int changes = 0;
    int ends = 0;
    int others = 0;
    Subscription watch = dispatch.directoryWatch(
        folder.url, [&] { ++changes; }, [&] { ++ends; });
    Subscription other = dispatch.directoryWatch(
        folder.url, [&] { ++others; }, [] {});
    ASSERT_TRUE(watch.isActive());
    folder.settle();
    EXPECT_EQ(changes, 0);
    folder.addEntry();
    folder.settle();
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(others, 1);

    folder.whileHeld([&] {
        for (int count = 0; count < 3; ++count) {
            folder.addEntry();
            folder.settle();
        }
        EXPECT_EQ(changes, 1);
    });
    folder.settle();
    EXPECT_EQ(changes, 2) << "once for all that happened";
    EXPECT_EQ(others, 2);

    folder.whileHeld([&] {
        folder.addEntry();
        folder.settle();
        other.end();
    });
    folder.settle();
    EXPECT_EQ(changes, 3);
    EXPECT_EQ(others, 2) << "nothing after its end";

    Subscription single;
    int calls = 0;
    single = dispatch.directoryWatch(
        folder.url,
        [&] {
            single.end();
            // The handler's own captures are there until it returns.
            ++calls;
        },
        [] {});
    for (int count = 0; count < 2; ++count) {
        folder.addEntry();
        folder.settle();
    }
    EXPECT_EQ(calls, 1);

    folder.whileHeld([&] {
        folder.addEntry();
        folder.settle();
        folder.remove();
        folder.settle();
    });
    folder.settle();
    EXPECT_EQ(changes, 5) << "the end comes instead of a change";
    EXPECT_EQ(ends, 1);
    folder.settle();
    EXPECT_EQ(ends, 1);
    EXPECT_TRUE(watch.isActive()) << "ends with its owner alone";
}

}
