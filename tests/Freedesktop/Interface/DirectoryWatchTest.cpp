#include "Freedesktop/Interface/FreedesktopDispatch.h"

#include "Fakes/TemporaryFolder.h"
#include "Freedesktop/Interface/SessionSupport.h"
#include "Platform/DispatchContract.h"

#include <QCoreApplication>

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>

namespace marrowick {
namespace {

/// What happened to a folder is in the kernel's queue when the call that did it returns.
void settle()
{
    for (int i = 0; i < 20; ++i)
        QCoreApplication::processEvents();
}

int openQueues()
{
    int count = 0;
    for (auto const& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code ignored;
        count += std::filesystem::read_symlink(entry.path(), ignored) == "anon_inode:inotify";
    }
    return count;
}

class DirectoryWatchTest : public testing::Test {
protected:
    Subscription watch(FileURL const& url)
    {
        return dispatch->directoryWatch(
            url, [this] { ++changes; }, [this] { ++ends; });
    }

    /// How often the watch reports a change for what `action` does.
    int changesBy(std::function<void()> const& action)
    {
        int const before = changes;
        action();
        settle();
        return changes - before;
    }

    std::string path(std::string_view name) const { return (folder / name).path(); }

    void rename(std::string_view from, std::string_view to) const
    {
        EXPECT_EQ(std::rename(path(from).c_str(), path(to).c_str()), 0) << from << ' ' << to;
    }

    TemporaryFolder folder;
    FileURL const watched = folder.folder("watched");
    std::shared_ptr<DeliveryGate> gate = std::make_shared<DeliveryGate>();
    std::optional<FreedesktopDispatch> dispatch { std::in_place, gate };
    int changes = 0;
    int ends = 0;
};

TEST_F(DirectoryWatchTest, KeepsThePromisesOfItsInterface)
{
    int number = 0;
    contract::directoryWatchKeepsItsPromises(*dispatch,
        { .url = watched,
            .addEntry = [&] { folder.file("watched/" + std::to_string(++number)); },
            .remove = [&] { folder.remove("watched"); },
            .settle = settle,
            .whileHeld =
                [&](auto const& work) {
                    DeliveryGate::Closure const closure(*gate);
                    work();
                } });
}

TEST_F(DirectoryWatchTest, EveryWayToAddRemoveOrRenameAnEntryCountsOnce)
{
    folder.file("outside");
    folder.file("replacement");
    auto const subscription = watch(watched);
    ASSERT_TRUE(subscription.isActive());
    EXPECT_EQ(changesBy([&] { folder.file("watched/file", "content"); }), 1);
    EXPECT_EQ(changesBy([&] { folder.folder("watched/folder"); }), 1);
    EXPECT_EQ(changesBy([&] { folder.link("watched/link", "nowhere"); }), 1);
    EXPECT_EQ(changesBy([&] { folder.fifo("watched/fifo"); }), 1);
    EXPECT_EQ(changesBy([&] { folder.file("watched/.hidden"); }), 1);
    EXPECT_EQ(changesBy([&] { ASSERT_EQ(::link(path("outside").c_str(), path("watched/second").c_str()), 0); }), 1);
    EXPECT_EQ(changesBy([&] { rename("watched/file", "watched/renamed \xFF"); }), 1);
    EXPECT_EQ(changesBy([&] { rename("outside", "watched/inside"); }), 1);
    EXPECT_EQ(changesBy([&] { rename("replacement", "watched/inside"); }), 1);
    EXPECT_EQ(changesBy([&] { rename("watched/inside", "outside again"); }), 1);
    EXPECT_EQ(changesBy([&] { folder.remove("watched/renamed \xFF"); }), 1);
    EXPECT_EQ(changesBy([&] { folder.remove("watched/folder"); }), 1);
    EXPECT_EQ(changesBy([&] { folder.remove("watched/link"); }), 1);
    EXPECT_EQ(ends, 0);
}

TEST_F(DirectoryWatchTest, WhatHappensToContentsAttributesOrBelowSubfoldersDoesNotCount)
{
    auto const file = folder.file("watched/file", "content");
    folder.folder("watched/sub/deeper");
    auto const subscription = watch(watched);
    EXPECT_EQ(changesBy([&] {
        folder.file("watched/file", "other content");
        std::ofstream(file.path(), std::ios::app) << "more";
        ASSERT_EQ(::truncate(file.path().c_str(), 3), 0);
        ASSERT_EQ(::chmod(file.path().c_str(), 0600), 0);
        ASSERT_EQ(::chmod(watched.path().c_str(), 0700), 0);
        folder.setModified("watched/file", 1'000'000);
        folder.setModified("watched", 1'000'000);
        static_cast<void>(::setxattr(file.path().c_str(), "user.marrowick", "x", 1, 0));
        EXPECT_EQ(folder.content("watched/file"), "oth");
        EXPECT_EQ(folder.names("watched").size(), 2U);
    }),
        0);
    EXPECT_EQ(changesBy([&] {
        folder.file("watched/sub/new");
        rename("watched/sub/new", "watched/sub/renamed");
        folder.remove("watched/sub/renamed");
        folder.folder("watched/sub/deeper/deepest");
        folder.remove("watched/sub/deeper");
        folder.file("beside");
        rename("beside", "beside renamed");
    }),
        0);
    EXPECT_EQ(ends, 0);
}

TEST_F(DirectoryWatchTest, BurstIsOneChange)
{
    auto const subscription = watch(watched);
    EXPECT_EQ(changesBy([&] {
        for (int number = 0; number < 1000; ++number)
            folder.file("watched/" + std::to_string(number));
        folder.remove("watched/7");
    }),
        1);
}

TEST_F(DirectoryWatchTest, MoreThanTheKernelKeepsIsOneChangeAndTheWatchGoesOn)
{
    int limit = 0;
    std::ifstream("/proc/sys/fs/inotify/max_queued_events") >> limit;
    ASSERT_GT(limit, 0);
    auto const subscription = watch(watched);
    EXPECT_EQ(changesBy([&] {
        folder.file("watched/0");
        // Each renaming is two events.
        for (int number = 0; number <= limit / 2; ++number)
            rename("watched/" + std::to_string(number), "watched/" + std::to_string(number + 1));
    }),
        1);
    EXPECT_EQ(changesBy([&] { folder.file("watched/later"); }), 1);
    EXPECT_EQ(ends, 0);
}

TEST_F(DirectoryWatchTest, EndOfTheFolderComesOnceAndNothingAfterIt)
{
    folder.file("watched/file");
    auto const subscription = watch(watched);
    EXPECT_EQ(changesBy([&] { folder.remove("watched"); }), 0);
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(changesBy([&] {
        folder.folder("watched");
        folder.file("watched/file");
    }),
        0);
    EXPECT_EQ(changesBy([&] { folder.remove("watched"); }), 0);
    EXPECT_EQ(ends, 1);
}

TEST_F(DirectoryWatchTest, FolderThatGetsAnotherNameIsGone)
{
    auto const subscription = watch(watched);
    EXPECT_EQ(changesBy([&] { rename("watched", "elsewhere"); }), 0);
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(changesBy([&] {
        folder.file("elsewhere/file");
        folder.remove("elsewhere");
    }),
        0);
    EXPECT_EQ(ends, 1);
}

TEST_F(DirectoryWatchTest, FolderThatIsReplacedByRenamingIsGone)
{
    folder.folder("other");
    auto const subscription = watch(watched);
    EXPECT_EQ(changesBy([&] { rename("other", "watched"); }), 0);
    EXPECT_EQ(ends, 1);
}

TEST_F(DirectoryWatchTest, UnmountingIsTheEnd)
{
    if (::unshare(CLONE_NEWNS) != 0 || ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
        GTEST_SKIP() << "Mounting a file system needs root.";
    ASSERT_EQ(::mount("tmpfs", watched.path().c_str(), "tmpfs", 0, nullptr), 0);
    auto const subscription = watch(watched);
    EXPECT_EQ(changesBy([&] { folder.file("watched/file"); }), 1);
    EXPECT_EQ(changesBy([&] { ASSERT_EQ(::umount(watched.path().c_str()), 0); }), 0);
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(changesBy([&] { folder.file("watched/file"); }), 0);
    EXPECT_EQ(ends, 1);
}

TEST_F(DirectoryWatchTest, LinkToAFolderStandsForTheFolder)
{
    auto const link = folder.link("link", "watched");
    auto const subscription = watch(link);
    ASSERT_TRUE(subscription.isActive());
    EXPECT_EQ(changesBy([&] { folder.file("watched/file"); }), 1);
    EXPECT_EQ(changesBy([&] { rename("link", "other link"); }), 0);
    EXPECT_EQ(ends, 0);
    EXPECT_EQ(changesBy([&] { folder.remove("watched"); }), 0);
    EXPECT_EQ(ends, 1);
}

TEST_F(DirectoryWatchTest, WhatIsNoFolderIsNotWatched)
{
    int const before = openQueues();
    folder.file("file");
    folder.link("to file", "file");
    folder.link("dangling", "missing");
    folder.fifo("fifo");
    for (auto const& url : { folder / "missing", folder / "file", folder / "to file", folder / "dangling",
             folder / "fifo", folder / "file/below", FileURL(), FileURL(path("watched") + std::string("\0x", 2)) })
        EXPECT_FALSE(watch(url).isActive()) << url.path();
    EXPECT_EQ(openQueues(), before);
}

TEST_F(DirectoryWatchTest, FolderThatMayNotBeReadIsNotWatched)
{
    ASSERT_EQ(::chmod(folder.url().path().c_str(), 0755), 0);
    ASSERT_EQ(::chmod(watched.path().c_str(), 0333), 0);
    constexpr uid_t nobody = 65534;
    bool const isRoot = ::geteuid() == 0;
    ASSERT_TRUE(!isRoot || ::seteuid(nobody) == 0);
    EXPECT_FALSE(watch(watched).isActive());
    ASSERT_TRUE(!isRoot || ::seteuid(0) == 0);
    ASSERT_EQ(::chmod(watched.path().c_str(), 0755), 0);
}

TEST_F(DirectoryWatchTest, WithoutAFreeFileDescriptorThereIsNoWatch)
{
    rlimit usual {};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &usual), 0);
    rlimit const none { .rlim_cur = 0, .rlim_max = usual.rlim_max };
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
    auto const subscription = watch(watched);
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &usual), 0);
    EXPECT_FALSE(subscription.isActive());
    EXPECT_TRUE(watch(watched).isActive());
}

TEST_F(DirectoryWatchTest, NothingComesAfterTheEndAndNoQueueIsLeft)
{
    int const before = openQueues();
    auto subscription = watch(watched);
    EXPECT_EQ(openQueues(), before + 1);
    EXPECT_EQ(changesBy([&] {
        folder.file("watched/file");
        subscription.end();
    }),
        0);
    EXPECT_EQ(openQueues(), before);
    EXPECT_EQ(changesBy([&] { folder.remove("watched"); }), 0);
    EXPECT_EQ(ends, 0);
}

TEST_F(DirectoryWatchTest, AWatchThatIsOverKeepsNoQueueOnceItsOwnerEndsIt)
{
    int const before = openQueues();
    auto subscription = watch(watched);
    folder.remove("watched");
    settle();
    EXPECT_EQ(ends, 1);
    subscription.end();
    EXPECT_EQ(openQueues(), before);
}

TEST_F(DirectoryWatchTest, MayBeReplacedInItsOwnHandlers)
{
    int const before = openQueues();
    Subscription subscription;
    int armed = 0;
    std::function<void()> arm = [&] {
        ++armed;
        subscription = dispatch->directoryWatch(
            watched, [&] { arm(); },
            [&] {
                folder.folder("watched");
                arm();
            });
    };
    arm();
    for (int turn = 0; turn < 3; ++turn) {
        folder.file("watched/file");
        settle();
        folder.remove("watched");
        settle();
    }
    EXPECT_EQ(armed, 7);
    EXPECT_EQ(openQueues(), before + 1);
    subscription.end();
    EXPECT_EQ(openQueues(), before);
}

TEST_F(DirectoryWatchTest, WatchesOfOneFolderAreIndependent)
{
    int others = 0;
    Subscription other;
    auto const subscription = dispatch->directoryWatch(
        watched,
        [&] {
            ++changes;
            other.end();
        },
        [] {});
    other = dispatch->directoryWatch(
        watched, [&] { ++others; }, [] {});
    EXPECT_EQ(changesBy([&] { folder.file("watched/one"); }), 1);
    int const asItEnded = others;
    EXPECT_LE(asItEnded, 1);
    EXPECT_EQ(changesBy([&] { folder.file("watched/two"); }), 1);
    EXPECT_EQ(others, asItEnded);
}

TEST_F(DirectoryWatchTest, WaitsBehindWhatTheGateHoldsAlready)
{
    std::vector<std::string> order;
    auto const subscription = dispatch->directoryWatch(
        watched, [&] { order.emplace_back("watch"); }, [] {});
    {
        DeliveryGate::Closure const closure(*gate);
        dispatch->onMainThread([&] { order.emplace_back("first"); });
        settle();
        folder.file("watched/file");
        settle();
        dispatch->onMainThread([&] { order.emplace_back("last"); });
        settle();
        EXPECT_THAT(order, testing::IsEmpty());
    }
    settle();
    EXPECT_THAT(order, testing::ElementsAre("first", "watch", "last"));
}

TEST_F(DirectoryWatchTest, NothingComesAfterTheEndOfTheDispatch)
{
    auto const subscription = watch(watched);
    {
        DeliveryGate::Closure const closure(*gate);
        folder.file("watched/waiting");
        settle();
        dispatch.reset();
        gate.reset();
        folder.file("watched/later");
        settle();
    }
    EXPECT_EQ(changesBy([&] { folder.remove("watched"); }), 0);
    EXPECT_EQ(ends, 0);
}

}
}
