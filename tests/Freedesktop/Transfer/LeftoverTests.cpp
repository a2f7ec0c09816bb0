#include "Freedesktop/Transfer/TransferTest.h"

#include "Freedesktop/Transfer/TemporaryName.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace marrowick {

namespace {

using LeftoverTest = TransferTest;
using Names = std::vector<std::string>;

void transferUnderKill(std::string const& call, FileURL const& from, FileURL const& to)
{
    auto const ended = runCommand({ "strace", "-f", "-qq", "-o", "/dev/null", "-e", "trace=all", "-e",
        "inject=" + call + ":signal=KILL", TRANSFER_PROGRAM, "copy", from.path(), to.path() });
    EXPECT_EQ(ended.status, 128 + SIGKILL) << ended.output;
}

}

TEST_F(LeftoverTest, NextTransferIntoTheFolderRemovesWhatAKilledOneLeft)
{
    auto const tree = makeTree();
    ASSERT_EQ(::chmod((folder / "tree/inner").path().c_str(), 0500), 0);
    folder.folder("into");
    auto const file = folder.file("file", "file");
    auto const link = folder.link("link", "nowhere");
    auto const fifo = folder.fifo("fifo");
    for (auto const& item : { tree, file, link, fifo }) {
        transferUnderKill("renameat2:when=1", item, folder / "into/item");
        auto const left = namesIn(folder / "into");
        ASSERT_EQ(left.size(), 1U);
        EXPECT_TRUE(isTemporaryName(left.front())) << left.front();
        EXPECT_EQ(messageOf(transfer.createAlias(folder / "into/alias", file)), "done");
        EXPECT_EQ(namesIn(folder / "into"), Names { "alias" });
        folder.remove("into/alias");
    }
    for (int transfers = 0; transfers < 2; ++transfers) {
        transferUnderKill("renameat2:when=1", tree, folder / "into/item");
        auto const next = transfers == 0 ? transfer.copyItem(file, folder / "into/next")
                                         : transfer.moveItem(file, folder / "into/next");
        EXPECT_EQ(messageOf(next), "done");
        EXPECT_EQ(namesIn(folder / "into"), Names { "next" });
        folder.remove("into/next");
    }
    ASSERT_EQ(::chmod((folder / "tree/inner").path().c_str(), 0700), 0);
}

TEST_F(LeftoverTest, UserWithoutPrivilegesRemovesWhatHasNoRightsAnyMore)
{
    ASSERT_EQ(::chmod(folder.url().path().c_str(), 0777), 0);
    EXPECT_EQ(asUserWithoutPrivileges([&]() -> std::string {
        auto const file = folder.file("file", "file");
        auto const tree = folder.folder("tree");
        folder.folder("tree/inner");
        folder.file("tree/inner/file", "text");
        ::chmod((folder / "tree/inner").path().c_str(), 0500);
        ::chmod(tree.path().c_str(), 0);
        pid_t const gone = ::fork();
        if (gone == 0)
            ::_exit(::rename(tree.path().c_str(), (folder / makeTemporaryName()).path().c_str()) == 0 ? 0 : 1);
        ::waitpid(gone, nullptr, 0);
        auto const outcome = messageOf(transfer.copyItem(file, folder / "copy"));
        return outcome + ' ' + std::to_string(namesIn(folder.url()).size());
    }),
        "done 2");
}

TEST_F(LeftoverTest, ItemThatIsBeingMadeIsLeftAlone)
{
    auto const tree = makeTree();
    folder.folder("into");
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    // Stops in the middle of the copy: the process is alive and holds its lock.
    pid_t const maker = ::fork();
    if (maker == 0) {
        ::dup2(ends[1], STDERR_FILENO);
        ::setenv("LSAN_OPTIONS", "detect_leaks=0", 1);
        ::execlp("strace", "strace", "-f", "-qq", "-o", "/dev/null", "-e", "inject=utimensat:signal=STOP:when=2",
            TRANSFER_PROGRAM, "copy", tree.path().c_str(), (folder / "into/copy").path().c_str(), nullptr);
        ::_exit(126);
    }
    auto const hasBegun = [&] {
        for (auto const& name : namesIn(folder / "into")) {
            auto const made = (folder / "into").appendingPathComponent(name);
            int const item = ::open(made.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
            bool const isLocked = item >= 0 && ::flock(item, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
            ::close(item);
            if (isLocked && namesIn(made).size() >= 2)
                return true;
        }
        return false;
    };
    for (int tries = 0; tries < 2000 && !hasBegun(); ++tries)
        ::usleep(5000);
    ASSERT_TRUE(hasBegun());
    auto const file = folder.file("file", "file");
    EXPECT_EQ(messageOf(transfer.copyItem(file, folder / "into/file")), "done");
    EXPECT_EQ(namesIn(folder / "into").size(), 2U);
    auto const processes = runCommand({ "ps", "-o", "pid=", "--ppid", std::to_string(maker) });
    ASSERT_EQ(::kill(std::atoi(processes.output.c_str()), SIGCONT), 0) << processes.output;
    int status = 0;
    ::waitpid(maker, &status, 0);
    EXPECT_EQ(status, 0);
    ::close(ends[0]);
    ::close(ends[1]);
    EXPECT_TRUE(isWholeTree(folder / "into/copy"));
    EXPECT_EQ(namesIn(folder / "into"), (Names { "copy", "file" }));
}

TEST_F(LeftoverTest, LockedItemIsLeftAloneWhoeverMadeIt)
{
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    pid_t const gone = ::fork();
    if (gone == 0) {
        auto const name = makeTemporaryName();
        ::_exit(::write(ends[1], name.data(), name.size()) == static_cast<ssize_t>(name.size()) ? 0 : 1);
    }
    ::waitpid(gone, nullptr, 0);
    char name[256] {};
    ASSERT_GT(::read(ends[0], name, sizeof name - 1), 0);
    ::close(ends[0]);
    ::close(ends[1]);
    ASSERT_TRUE(isMakerGone(name));
    auto const file = folder.file("file", "file");
    int const item = ::open(folder.file(name, "begun").path().c_str(), O_WRONLY | O_CLOEXEC);
    ASSERT_EQ(::flock(item, LOCK_EX | LOCK_NB), 0);
    EXPECT_EQ(messageOf(transfer.copyItem(file, folder / "first")), "done");
    EXPECT_EQ(contentOf(folder / name), "begun");
    ::close(item);
    EXPECT_EQ(messageOf(transfer.copyItem(file, folder / "second")), "done");
    EXPECT_FALSE(isThere(folder / name));
}

TEST_F(LeftoverTest, FreshItemOfALivingProcessIsLeftAloneBeforeItHasItsLock)
{
    auto const name = makeTemporaryName();
    folder.file(name, "begun");
    auto const file = folder.file("file", "file");
    EXPECT_EQ(messageOf(transfer.copyItem(file, folder / "copy")), "done");
    EXPECT_EQ(contentOf(folder / name), "begun");
}

TEST_F(LeftoverTest, WithoutLocksOnlyWhatNobodyMakesAnyMoreGoes)
{
    auto const file = folder.file("file", "file");
    auto const copyWithoutLocks = [&](FileURL const& to) {
        return runCommand({ "strace", "-f", "-qq", "-o", "/dev/null", "-e", "inject=flock:error=ENOLCK",
                              TRANSFER_PROGRAM, "copy", file.path(), to.path() })
            .output;
    };
    auto const alive = makeTemporaryName();
    folder.file(alive, "begun");
    EXPECT_EQ(copyWithoutLocks(folder / "copy"), "");
    EXPECT_TRUE(isThere(folder / alive));
    folder.folder("into");
    transferUnderKill("renameat2:when=1", file, folder / "into/item");
    EXPECT_EQ(copyWithoutLocks(folder / "into/copy"), "");
    EXPECT_EQ(namesIn(folder / "into"), Names { "copy" });
}

TEST_F(LeftoverTest, UsersOwnHiddenItemsAreLeftAlone)
{
    for (auto const* name : { ".marrowick-transfer-", ".marrowick-transfer-1", ".marrowick-transfer-mine", ".hidden",
             ".marrowick-transfer-12-34-56 copy" })
        folder.file(name, name);
    auto const file = folder.file("file", "file");
    EXPECT_EQ(messageOf(transfer.copyItem(file, folder / "copy")), "done");
    EXPECT_EQ(namesIn(folder.url()).size(), 7U);
}

TEST_F(LeftoverTest, FailedTransferLeavesNothing)
{
    auto const tree = makeTree();
    auto const ended = runCommand({ "strace", "-f", "-qq", "-o", "/dev/null", "-e", "inject=utimensat:error=EIO:when=4",
        TRANSFER_PROGRAM, "move", tree.path(), (elsewhere / "moved").path() });
    EXPECT_EQ(ended.status, 1) << ended.output;
    EXPECT_EQ(ended.output.find("Could not move"), 0U) << ended.output;
    EXPECT_NE(ended.output.find(": Input/output error."), std::string::npos) << ended.output;
    EXPECT_EQ(ended.output.find("marrowick-transfer"), std::string::npos) << ended.output;
    EXPECT_EQ(namesIn(elsewhere.url()), Names {});
    EXPECT_TRUE(isWholeTree(tree));
}

}
