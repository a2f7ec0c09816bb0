#include "Freedesktop/Transfer/TransferTest.h"

#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

namespace marrowick {

namespace {

using FailureTest = TransferTest;
using Names = std::vector<std::string>;

}

TEST_F(FailureTest, FullFileSystemIsLeftAsItWas)
{
    SKIP_UNLESS_ROOT_MAY_MOUNT();
    auto const full = folder.folder("full");
    Mount const mount("tmpfs", full, "size=1m");
    folder.file("full/before", "before");
    auto const large = folder.file("large", std::string(2 << 20, 'x'));
    auto const tree = folder.folder("tree");
    for (int number = 0; number < 20; ++number)
        folder.file("tree/" + std::to_string(number), std::string(100000, 'x'));
    for (auto const& item : { large, tree }) {
        auto const to = full.appendingPathComponent("item");
        EXPECT_NE(messageOf(transfer.copyItem(item, to)).find(": No space left on device."), std::string::npos);
        EXPECT_NE(messageOf(transfer.moveItem(item, to)).find(": No space left on device."), std::string::npos);
        EXPECT_EQ(namesIn(full), Names { "before" });
    }
    EXPECT_EQ(contentOf(large).size(), 2U << 20);
    EXPECT_EQ(namesIn(tree).size(), 20U);
    EXPECT_EQ(messageOf(transfer.copyItem(large, full.appendingPathComponent("item"))),
        "Could not copy \u201Clarge\u201D: No space left on device.");
}

TEST_F(FailureTest, ReadOnlyFileSystemIsNamed)
{
    SKIP_UNLESS_ROOT_MAY_MOUNT();
    auto const readOnly = folder.folder("read-only");
    auto const item = folder.file("item", "item");
    Mount const mount("tmpfs", readOnly, "size=1m");
    folder.file("read-only/here", "here");
    ASSERT_EQ(::mount("none", readOnly.path().c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
    auto const to = readOnly.appendingPathComponent("item");
    EXPECT_EQ(messageOf(transfer.copyItem(item, to)), "Could not copy \u201Citem\u201D: Read-only file system.");
    EXPECT_EQ(messageOf(transfer.moveItem(item, to)), "Could not move \u201Citem\u201D: Read-only file system.");
    EXPECT_EQ(
        messageOf(transfer.createAlias(to, item)), "Could not make the alias \u201Citem\u201D: Read-only file system.");
    // Nothing is copied that could not be taken away afterwards.
    EXPECT_EQ(messageOf(transfer.moveItem(readOnly.appendingPathComponent("here"), elsewhere / "here")),
        "Could not move \u201Chere\u201D: Read-only file system.");
    EXPECT_EQ(namesIn(elsewhere.url()), Names {});
    EXPECT_EQ(messageOf(transfer.copyItem(readOnly.appendingPathComponent("here"), elsewhere / "here")), "done");
}

TEST_F(FailureTest, FolderThatMayNotBeWrittenIsLeftAlone)
{
    auto const item = folder.file("item", "item");
    auto const closed = folder.folder("closed");
    ASSERT_EQ(::chmod(closed.path().c_str(), 0555), 0);
    ASSERT_EQ(::chmod(folder.url().path().c_str(), 0777), 0);
    EXPECT_EQ(asUserWithoutPrivileges([&] { return messageOf(transfer.copyItem(item, folder / "closed/item")); }),
        "Could not copy \u201Citem\u201D: Permission denied.");
    EXPECT_EQ(asUserWithoutPrivileges([&] { return messageOf(transfer.moveItem(item, folder / "closed/item")); }),
        "Could not move \u201Citem\u201D: Permission denied.");
    EXPECT_EQ(namesIn(closed), Names {});
    EXPECT_EQ(contentOf(item), "item");
}

TEST_F(FailureTest, UnreadableFileInATreeIsNamedAndNothingStays)
{
    auto const tree = makeTree();
    ASSERT_EQ(::chmod((folder / "tree/inner/second").path().c_str(), 0), 0);
    ASSERT_EQ(::chmod(elsewhere.url().path().c_str(), 0777), 0);
    ASSERT_EQ(::chmod(folder.url().path().c_str(), 0777), 0);
    EXPECT_EQ(asUserWithoutPrivileges([&] { return messageOf(transfer.copyItem(tree, elsewhere / "copy")); }),
        "Could not copy \u201Csecond\u201D: Permission denied.");
    EXPECT_EQ(namesIn(elsewhere.url()), Names {});
}

TEST_F(FailureTest, TreeThatCouldNotBeTakenAwayIsNotMovedAcross)
{
    ASSERT_EQ(::chmod(elsewhere.url().path().c_str(), 0777), 0);
    ASSERT_EQ(::chmod(folder.url().path().c_str(), 0777), 0);
    auto const tree = makeTree();
    ASSERT_EQ(::chmod((folder / "tree/inner").path().c_str(), 0555), 0);
    if (::geteuid() == 0) {
        ASSERT_EQ(runCommand({ "chown", "-R", "65534:65534", tree.path() }).status, 0);
    }
    EXPECT_EQ(asUserWithoutPrivileges([&] { return messageOf(transfer.moveItem(tree, elsewhere / "moved")); }),
        "Could not move \u201Cinner\u201D: Permission denied.");
    EXPECT_TRUE(isWholeTree(tree));
    EXPECT_EQ(namesIn(elsewhere.url()), Names {});
    ASSERT_EQ(::chmod((folder / "tree/inner").path().c_str(), 0755), 0);
}

TEST_F(FailureTest, OthersItemInAStickyFolderIsNotMovedAcross)
{
    SKIP_UNLESS_ROOT();
    ASSERT_EQ(::chmod(elsewhere.url().path().c_str(), 0777), 0);
    ASSERT_EQ(::chmod(folder.url().path().c_str(), 01777), 0);
    auto const item = folder.file("item", "item");
    EXPECT_EQ(asUserWithoutPrivileges([&] { return messageOf(transfer.moveItem(item, elsewhere / "moved")); }),
        "Could not move \u201Citem\u201D: Operation not permitted.");
    EXPECT_EQ(contentOf(item), "item");
    EXPECT_EQ(namesIn(elsewhere.url()), Names {});
}

TEST_F(FailureTest, QuotaIsNamed)
{
    auto const tree = makeTree();
    auto const ended
        = runCommand({ "strace", "-f", "-qq", "-o", "/dev/null", "-e", "inject=pwrite64,copy_file_range:error=EDQUOT",
            TRANSFER_PROGRAM, "move", tree.path(), (elsewhere / "moved").path() });
    EXPECT_EQ(ended.status, 1);
    EXPECT_NE(ended.output.find(": Disk quota exceeded."), std::string::npos) << ended.output;
    EXPECT_TRUE(isWholeTree(tree));
    EXPECT_EQ(namesIn(elsewhere.url()), Names {});
}

TEST_F(FailureTest, ErrorThatOnlyClosingTellsCounts)
{
    auto const item = folder.file("item", "item");
    auto const log = folder / "log";
    // The close that ends the copy is the first after the times were set.
    auto const transferWith = [&](std::vector<std::string> const& injection, FileURL const& to) {
        std::vector<std::string> command { "strace", "-qq", "-o", log.path(), "-e", "trace=utimensat,close" };
        command.insert(command.end(), injection.begin(), injection.end());
        command.insert(command.end(), { TRANSFER_PROGRAM, "move", item.path(), to.path() });
        return runCommand(command);
    };
    constexpr int attempts = 50;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        ASSERT_EQ(transferWith({}, elsewhere / "moved").status, 0);
        ASSERT_EQ(::rename((elsewhere / "moved").path().c_str(), (elsewhere / "first").path().c_str()), 0);
        folder.file("item", "item");
        auto const calls = contentOf(log);
        auto const before = calls.substr(0, calls.find("utimensat("));
        int closes = 0;
        for (auto at = before.find("close("); at != std::string::npos; at = before.find("close(", at + 1))
            ++closes;
        auto const ended
            = transferWith({ "-e", "inject=close:error=EIO:when=" + std::to_string(closes + 1) }, elsewhere / "moved");
        // A sanitizer closes more or fewer files while the program starts, so it may have been another one.
        auto const traced = contentOf(log);
        auto const timesSet = traced.find("utimensat(");
        auto const closed = timesSet == std::string::npos ? timesSet : traced.find("close(", timesSet);
        auto const injected = traced.find("(INJECTED)");
        if (injected == std::string::npos || closed == std::string::npos || injected < closed
            || traced.find('\n', closed) < injected) {
            std::filesystem::remove((elsewhere / "moved").path());
            folder.file("item", "item");
            continue;
        }
        EXPECT_EQ(ended.output, "Could not move \u201Citem\u201D: Input/output error.\n");
        EXPECT_EQ(contentOf(item), "item");
        EXPECT_EQ(namesIn(elsewhere.url()), Names { "first" });
        return;
    }
    FAIL() << "No close that ends a copy was met in " << attempts << " attempts";
}

TEST_F(FailureTest, FileThatGrowsMeanwhileIsNotTaken)
{
    auto const item = folder.file("item", std::string(1 << 20, 'x'));
    // A child that appends while the copy waits before its first look at the finished data.
    auto const ended = runCommand({ "bash", "-c",
        "( sleep 0.3; printf more >>\"$1\" ) & strace -f -qq -o /dev/null -e inject=copy_file_range:delay_enter=800000 "
        "\"$2\" move \"$1\" \"$3\"; status=$?; wait; exit $status",
        "race", item.path(), TRANSFER_PROGRAM, (elsewhere / "moved").path() });
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.output, "Could not move \u201Citem\u201D: It has changed meanwhile.\n");
    EXPECT_EQ(contentOf(item).size(), (1U << 20) + 4);
    EXPECT_EQ(namesIn(elsewhere.url()), Names {});
}

TEST_F(FailureTest, AMoveElsewhereIsOnTheDiskBeforeItHasItsNameAndBeforeTheOriginalGoes)
{
    auto const item = folder.file("item", "content");
    auto const trace = folder / "trace";
    auto const ended = runCommand({ "strace", "-f", "-qq", "-o", trace.path(), "-e", "trace=syncfs,renameat2,unlinkat",
        TRANSFER_PROGRAM, "move", item.path(), (elsewhere / "moved").path() });
    ASSERT_EQ(ended.status, 0) << ended.output;
    std::vector<std::string> calls;
    std::istringstream lines(contentOf(trace));
    for (std::string line; std::getline(lines, line);) {
        auto const begin = line.find_first_of("sru");
        bool const hasFailed = line.find("= -1") != std::string::npos;
        if (begin != std::string::npos && !hasFailed)
            calls.push_back(line.substr(begin, line.find('(') - begin));
    }
    EXPECT_EQ(calls, (std::vector<std::string> { "syncfs", "renameat2", "syncfs", "unlinkat" }));
}

TEST_F(FailureTest, AnImpossibleNameIsFoundOutBeforeAnythingIsCopied)
{
    auto const item = folder.file("item", "content");
    auto const to = elsewhere / std::string(256, 'x');
    EXPECT_EQ(messageOf(transfer.copyItem(item, to)), "Could not copy “item”: File name too long.");
    EXPECT_EQ(messageOf(transfer.moveItem(item, to)), "Could not move “item”: File name too long.");
    EXPECT_EQ(namesIn(elsewhere.url()), Names {});
    EXPECT_EQ(contentOf(item), "content");
}

TEST_F(FailureTest, WhatWasAddedAfterTheCopyStays)
{
    auto const tree = makeTree();
    auto const ended = runCommand({ "bash", "-c",
        "( sleep 0.4; echo more >\"$1/inner/more\"; echo changed >\"$1/first\" ) & "
        "strace -f -qq -o /dev/null -e inject=syncfs:delay_enter=900000:when=1 \"$2\" move \"$1\" \"$3\"; status=$?; "
        "wait; "
        "exit $status",
        "race", tree.path(), TRANSFER_PROGRAM, (elsewhere / "moved").path() });
    EXPECT_EQ(ended.status, 1);
    EXPECT_NE(ended.output.find("The copy is complete. Could not remove “"), std::string::npos) << ended.output;
    EXPECT_NE(ended.output.find(": It has changed meanwhile."), std::string::npos) << ended.output;
    EXPECT_TRUE(isWholeTree(elsewhere / "moved"));
    EXPECT_EQ(contentOf(folder / "tree/inner/more"), "more\n");
    EXPECT_EQ(contentOf(folder / "tree/first"), "changed\n");
    EXPECT_FALSE(isThere(folder / "tree/inner/second"));
}

}
