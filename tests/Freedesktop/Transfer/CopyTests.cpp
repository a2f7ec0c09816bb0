#include "Freedesktop/Transfer/TransferTest.h"

#include <algorithm>
#include <atomic>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <thread>
#include <unistd.h>

namespace marrowick {

namespace {

using CopyTest = TransferTest;
using Names = std::vector<std::string>;

struct stat statusOf(FileURL const& url)
{
    struct stat status { };
    EXPECT_EQ(::lstat(url.path().c_str(), &status), 0) << url.path();
    return status;
}

void makeEveryKind(FileURL const& folder)
{
    auto const made = runCommand({ MAKE_EVERY_KIND, folder.path() });
    ASSERT_EQ(made.status, 0) << made.output;
}

/// What rsync finds different between two trees.
std::string differences(FileURL const& a, FileURL const& b)
{
    auto const compared = runCommand(
        { "rsync", "-aHAXn", "--delete", "--checksum", "--modify-window=-1", "-i", a.path() + '/', b.path() + '/' });
    EXPECT_EQ(compared.status, 0) << compared.output;
    return compared.output;
}

void expectSameBlocks(FileURL const& a, FileURL const& b, char const* name)
{
    EXPECT_EQ(statusOf(a.appendingPathComponent(name)).st_blocks, statusOf(b.appendingPathComponent(name)).st_blocks)
        << name;
}

void expectLikeArchive(FileTransfer& transfer, FileURL const& tree, FileURL const& place)
{
    auto const ours = place.appendingPathComponent("ours");
    auto const theirs = place.appendingPathComponent("theirs");
    EXPECT_EQ(messageOf(transfer.copyItem(tree, ours)), "done");
    auto const copied = runCommand({ "cp", "-a", tree.path(), theirs.path() });
    EXPECT_EQ(copied.status, 0) << copied.output;
    EXPECT_EQ(differences(theirs, ours), "");
    EXPECT_EQ(differences(tree, ours), "");
    for (auto const* name : { "holes", "onlyhole", "large", "file" })
        expectSameBlocks(theirs, ours, name);
    EXPECT_LT(statusOf(ours.appendingPathComponent("holes")).st_blocks, 2048);
    EXPECT_EQ(statusOf(ours.appendingPathComponent("onlyhole")).st_blocks, 0);
}

}

TEST_F(CopyTest, KeepsWhatAnArchiveCopyKeeps)
{
    makeEveryKind(folder.url());
    folder.folder("place");
    expectLikeArchive(transfer, folder / "tree", folder / "place");
}

TEST_F(CopyTest, KeepsWhatAnArchiveCopyKeepsOnAnotherFileSystem)
{
    makeEveryKind(folder.url());
    expectLikeArchive(transfer, folder / "tree", elsewhere.url());
}

TEST_F(CopyTest, MoveToAnotherFileSystemKeepsIt)
{
    makeEveryKind(folder.url());
    ASSERT_EQ(runCommand({ "cp", "-a", (folder / "tree").path(), (folder / "reference").path() }).status, 0);
    EXPECT_EQ(messageOf(transfer.moveItem(folder / "tree", elsewhere / "moved")), "done");
    EXPECT_EQ(differences(folder / "reference", elsewhere / "moved"), "");
    EXPECT_EQ(namesIn(folder.url()), Names { "reference" });
}

TEST_F(CopyTest, KeepsWhatAnArchiveCopyKeepsOnALayeredFileSystem)
{
    SKIP_UNLESS_ROOT_MAY_MOUNT();
    for (auto const* name : { "lower", "disk", "merged" })
        folder.folder(name);
    makeEveryKind(folder / "lower");
    Mount const disk("tmpfs", folder / "disk", "size=50m");
    folder.folder("disk/upper");
    folder.folder("disk/work");
    Mount const overlay("overlay", folder / "merged",
        "lowerdir=" + (folder / "lower").path() + ",upperdir=" + (folder / "disk/upper").path()
            + ",workdir=" + (folder / "disk/work").path());
    folder.folder("merged/place");
    expectLikeArchive(transfer, folder / "merged/tree", folder / "merged/place");
    // The system refuses to rename a folder of the lower layer; it moves all the same.
    EXPECT_EQ(messageOf(transfer.moveItem(folder / "merged/tree", folder / "merged/moved")), "done");
    EXPECT_EQ(differences(folder / "lower/tree", folder / "merged/moved"), "");
    EXPECT_FALSE(isThere(folder / "merged/tree"));
}

TEST_F(CopyTest, UserWithoutPrivilegesKeepsWhatAnArchiveCopyKeeps)
{
    SKIP_UNLESS_ROOT();
    ASSERT_EQ(::chmod(folder.url().path().c_str(), 0777), 0);
    auto const answer = asUserWithoutPrivileges([&] {
        auto const made = runCommand({ MAKE_EVERY_KIND, folder.url().path() });
        auto const ours = messageOf(transfer.copyItem(folder / "tree", folder / "ours"));
        auto const theirs = runCommand({ "cp", "-a", (folder / "tree").path(), (folder / "theirs").path() });
        return made.output + ours + theirs.output;
    });
    EXPECT_EQ(answer, "done");
    EXPECT_EQ(differences(folder / "theirs", folder / "ours"), "");
}

TEST_F(CopyTest, ForeignOwnersRightsAreNotTakenOver)
{
    SKIP_UNLESS_ROOT();
    auto const program = folder.file("program", "run");
    ASSERT_EQ(::chmod(program.path().c_str(), 06755), 0);
    ASSERT_EQ(::chmod(folder.url().path().c_str(), 0777), 0);
    EXPECT_EQ(asUserWithoutPrivileges([&] { return messageOf(transfer.copyItem(program, folder / "copy")); }), "done");
    EXPECT_EQ(modeOf(folder / "copy"), 0755U);
    EXPECT_EQ(statusOf(folder / "copy").st_uid, 65534U);
}

TEST_F(CopyTest, AccessThatTheFolderGivesDoesNotReachTheCopy)
{
    auto const place = folder.folder("place");
    ASSERT_EQ(runCommand({ "setfacl", "-m", "d:u:12345:rwx,d:g::rwx", place.path() }).status, 0);
    auto const tree = makeTree();
    ASSERT_EQ(::mkfifo((folder / "fifo").path().c_str(), 0644), 0);
    for (auto const* name : { "tree", "tree/inner/second", "fifo" }) {
        auto const to = place.appendingPathComponent("copy");
        EXPECT_EQ(messageOf(transfer.copyItem(folder / name, to)), "done");
        EXPECT_EQ(::lgetxattr(to.path().c_str(), "system.posix_acl_access", nullptr, 0), -1) << name;
        EXPECT_EQ(::lgetxattr(to.path().c_str(), "system.posix_acl_default", nullptr, 0), -1) << name;
        EXPECT_EQ(modeOf(to), modeOf(folder / name));
        if (std::string(name) == "tree") {
            EXPECT_EQ(differences(tree, to), "");
        }
        EXPECT_EQ(messageOf(transfer.removeItem(to)), "done");
    }
}

TEST_F(CopyTest, ListThatTheFileSystemDoesNotTakeLeavesTheGroupNoMoreThanItHad)
{
    SKIP_UNLESS_ROOT_MAY_MOUNT();
    auto const plain = folder.folder("plain");
    Mount const mount("ramfs", plain, "");
    auto const file = folder.file("file", "text");
    ASSERT_EQ(runCommand({ "setfacl", "-m", "u:12345:rw-,g::---,m:rw-", file.path() }).status, 0);
    ASSERT_EQ(modeOf(file), 0664U);
    EXPECT_EQ(messageOf(transfer.copyItem(file, folder / "plain/copy")), "done");
    EXPECT_EQ(modeOf(folder / "plain/copy"), 0604U);
}

TEST_F(CopyTest, RightsAreNeverWiderDuringTheCopy)
{
    auto const source = folder.file("source", std::string(32 << 20, 'x'));
    ASSERT_EQ(::chmod(source.path().c_str(), 0440), 0);
    // Seen at every system call that changes a file, by the modes with which things are made and changed.
    auto const log = folder / "log";
    auto const traced
        = runCommand({ "strace", "-f", "-qq", "-o", log.path(), "-e", "trace=openat,mkdirat,fchmod,chmod,fchmodat",
            TRANSFER_PROGRAM, "copy", source.path(), (elsewhere / "copy").path() });
    ASSERT_EQ(traced.status, 0) << traced.output;
    auto const calls = contentOf(log);
    EXPECT_NE(calls.find("O_CREAT|O_EXCL|O_NOFOLLOW|O_CLOEXEC, 0400)"), std::string::npos) << calls;
    EXPECT_NE(calls.find(", 0440)"), std::string::npos) << calls;
    EXPECT_EQ(modeOf(elsewhere / "copy"), 0440U);
}

TEST_F(CopyTest, PipesSocketsAndDevicesNeverBlock)
{
    auto const fifo = folder.fifo("fifo");
    EXPECT_EQ(messageOf(transfer.copyItem(fifo, folder / "copy")), "done");
    EXPECT_TRUE(S_ISFIFO(statusOf(folder / "copy").st_mode));
    EXPECT_EQ(messageOf(transfer.moveItem(fifo, elsewhere / "moved")), "done");
    EXPECT_TRUE(S_ISFIFO(statusOf(elsewhere / "moved").st_mode));
    EXPECT_FALSE(isThere(fifo));
}

TEST_F(CopyTest, DeviceThatMayNotBeMadeIsAnError)
{
    ASSERT_EQ(::chmod(folder.url().path().c_str(), 0777), 0);
    EXPECT_EQ(
        asUserWithoutPrivileges([&] { return messageOf(transfer.copyItem(FileURL("/dev/null"), folder / "null")); }),
        "Could not copy \u201Cnull\u201D: Operation not permitted.");
    EXPECT_EQ(namesIn(folder.url()), Names {});
}

TEST_F(CopyTest, FilesOfTheKernelAreCopiedWithTheirContent)
{
    EXPECT_EQ(messageOf(transfer.copyItem(FileURL("/proc/version"), folder / "version")), "done");
    EXPECT_EQ(contentOf(folder / "version"), contentOf(FileURL("/proc/version")));
    FileURL const attribute("/sys/kernel/mm/transparent_hugepage/enabled");
    FileURL const other("/sys/kernel/profiling");
    for (auto const& url : { attribute, other }) {
        if (!isThere(url))
            continue;
        EXPECT_EQ(messageOf(transfer.copyItem(url, folder / "copy")), "done");
        EXPECT_EQ(contentOf(folder / "copy"), contentOf(url));
        EXPECT_EQ(messageOf(transfer.removeItem(folder / "copy")), "done");
    }
}

TEST_F(CopyTest, TreeOfAThousandLevelsNeedsFewDescriptors)
{
    int current = ::open(folder.url().path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    for (int depth = 0; depth < 1000; ++depth) {
        ASSERT_EQ(::mkdirat(current, "level", 0700), 0);
        int const next = ::openat(current, "level", O_PATH | O_DIRECTORY | O_CLOEXEC);
        ::close(current);
        current = next;
    }
    ::close(::openat(current, "file", O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
    ASSERT_EQ(::linkat(current, "file", current, "again", 0), 0);
    ::close(current);

    rlimit before {};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
    rlimit const few { 32, before.rlim_max };
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
    auto const copied = transfer.copyItem(folder / "level", folder / "copy");
    auto const moved = transfer.moveItem(folder / "level", elsewhere / "moved");
    auto const removed = transfer.removeItem(folder / "copy");
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &before), 0);
    EXPECT_EQ(messageOf(copied), "done");
    EXPECT_EQ(messageOf(moved), "done");
    EXPECT_EQ(messageOf(removed), "done");
    EXPECT_EQ(namesIn(folder.url()), Names {});
    auto const found = runCommand({ "find", (elsewhere / "moved").path() });
    EXPECT_EQ(std::count(found.output.begin(), found.output.end(), '\n'), 1002);
    EXPECT_EQ(messageOf(transfer.removeItem(elsewhere / "moved")), "done");
}

TEST_F(CopyTest, LinksThatAppearMeanwhileAreNotFollowed)
{
    folder.folder("outside");
    folder.file("outside/secret", "secret");
    auto const tree = folder.folder("tree");
    auto const inner = folder.folder("tree/inner");
    folder.file("tree/inner/secret", "harmless");
    auto const parked = tree.path() + "/parked";
    std::atomic<bool> isOver = false;
    std::thread swapper([&] {
        while (!isOver) {
            ::rename(inner.path().c_str(), parked.c_str());
            static_cast<void>(::symlink((folder / "outside").path().c_str(), inner.path().c_str()) == 0);
            ::unlink(inner.path().c_str());
            ::rename(parked.c_str(), inner.path().c_str());
        }
    });
    for (int round = 0; round < 300; ++round) {
        auto const outcome = transfer.copyItem(tree, elsewhere / "copy");
        if (!outcome)
            continue;
        struct stat status { };
        if (::lstat((elsewhere / "copy/inner").path().c_str(), &status) == 0 && S_ISDIR(status.st_mode)) {
            EXPECT_NE(contentOf(elsewhere / "copy/inner/secret"), "secret");
        }
        EXPECT_EQ(messageOf(transfer.removeItem(elsewhere / "copy")), "done");
    }
    for (int round = 0; round < 300; ++round)
        static_cast<void>(transfer.removeItem(tree).hasValue());
    isOver = true;
    swapper.join();
    EXPECT_EQ(contentOf(folder / "outside/secret"), "secret");
    EXPECT_EQ(namesIn(elsewhere.url()), Names {});
}

}
