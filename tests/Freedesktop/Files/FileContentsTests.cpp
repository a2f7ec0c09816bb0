#include "Freedesktop/Files/FreedesktopFileContents.h"

#include "AsOtherUser.h"
#include "Fakes/TemporaryFolder.h"

#include <atomic>
#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <future>
#include <gtest/gtest.h>
#include <limits>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

namespace marrowick {
namespace {

class FileContentsTest : public testing::Test {
protected:
    std::string content(FileURL const& url, std::size_t limit = 1000) const
    {
        auto const result = contents.read(url, limit);
        EXPECT_TRUE(result.hasValue());
        return result ? result.value() : result.error().message;
    }
    std::optional<ErrorKind> failure(FileURL const& url, std::size_t limit = 1000) const
    {
        auto const result = contents.read(url, limit);
        return result ? std::nullopt : std::optional(result.error().kind);
    }

    TemporaryFolder folder;
    FreedesktopFileContents contents;
};

TEST_F(FileContentsTest, ReadsAllBytes)
{
    std::string const bytes("a\0\xFF\n", 4);
    EXPECT_EQ(content(folder.file("a", bytes)), bytes);
    EXPECT_EQ(content(folder.file("empty")), "");
    EXPECT_EQ(content(folder.file("broken \xFF\xFE\nname", "x")), "x");
    EXPECT_EQ(content(folder.link("link", "a")), bytes);
    std::string const large(300000, 'z');
    EXPECT_EQ(content(folder.file("large", large), large.size()), large);
    EXPECT_EQ(content(folder / "large", std::numeric_limits<std::size_t>::max()), large);
}

TEST_F(FileContentsTest, TheLimitIsTheLastSizeThatIsRead)
{
    auto const file = folder.file("a", "12345");
    EXPECT_EQ(content(file, 5), "12345");
    EXPECT_EQ(failure(file, 4), ErrorKind::tooLarge);
    EXPECT_EQ(failure(file, 0), ErrorKind::tooLarge);
    EXPECT_EQ(content(folder.file("empty"), 0), "");
}

TEST_F(FileContentsTest, AFileWhoseSizeIsNotToldIsReadWithinTheLimit)
{
    FileURL const file("/proc/self/status");
    EXPECT_NE(content(file, 100000).find("Pid:"), std::string::npos);
    EXPECT_EQ(failure(file, 10), ErrorKind::tooLarge);
}

TEST_F(FileContentsTest, ALargeSparseFileIsRefusedWithoutReading)
{
    auto const file = folder.file("sparse");
    ASSERT_EQ(::truncate(file.path().c_str(), off_t { 1 } << 40), 0);
    EXPECT_EQ(failure(file, std::size_t { 1 } << 30), ErrorKind::tooLarge);
}

TEST_F(FileContentsTest, OnlyRegularFilesAreRead)
{
    EXPECT_EQ(failure(folder.folder("directory")), ErrorKind::notRegularFile);
    EXPECT_EQ(failure(folder.link("link", "directory")), ErrorKind::notRegularFile);
    EXPECT_EQ(failure(FileURL("/dev/zero")), ErrorKind::notRegularFile);
    EXPECT_EQ(failure(folder.fifo("fifo")), ErrorKind::notRegularFile);

    int const socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address { .sun_family = AF_UNIX, .sun_path = {} };
    auto const path = (folder / "socket").path();
    ASSERT_LT(path.size(), sizeof address.sun_path);
    path.copy(address.sun_path, path.size());
    ASSERT_EQ(::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(failure(folder / "socket"), ErrorKind::notRegularFile);
    ::close(socket);
}

// A reader that opened the FIFO, even without waiting, would let the writer's opening succeed.
TEST_F(FileContentsTest, AWriterThatWaitsAtAFifoIsNotDisturbed)
{
    auto const fifo = folder.fifo("fifo");
    auto writer = std::async(std::launch::async, [&] { return ::open(fifo.path().c_str(), O_WRONLY | O_CLOEXEC); });
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(failure(fifo), ErrorKind::notRegularFile);
        EXPECT_EQ(writer.wait_for(std::chrono::milliseconds(5)), std::future_status::timeout);
    }
    int const reader = ::open(fifo.path().c_str(), O_RDONLY | O_CLOEXEC);
    ::close(writer.get());
    ::close(reader);
}

TEST_F(FileContentsTest, ALinkCanBeRefusedWhateverItLeadsTo)
{
    auto const kindOf = [&](FileURL const& url) -> std::optional<ErrorKind> {
        auto const result = contents.readUnlessLink(url, 1000);
        return result ? std::nullopt : std::optional(result.error().kind);
    };
    auto const file = folder.file("file", "content");
    auto const result = contents.readUnlessLink(file, 7);
    EXPECT_EQ(result ? result.value() : "", "content");
    EXPECT_EQ(contents.readUnlessLink(file, 6).error().kind, ErrorKind::tooLarge);
    for (auto const* const target : { "file", "missing", "link", "/dev/zero", "/etc/passwd" }) {
        EXPECT_EQ(kindOf(folder.link("link", target)), ErrorKind::notRegularFile) << target;
        folder.remove("link");
    }
    EXPECT_EQ(kindOf(folder / "missing"), ErrorKind::notFound);
    EXPECT_EQ(kindOf(folder.folder("directory")), ErrorKind::notRegularFile);
    EXPECT_EQ(kindOf(FileURL("/dev/zero")), ErrorKind::notRegularFile);
    EXPECT_EQ(kindOf(FileURL("/dev/tty")), ErrorKind::notRegularFile);
    EXPECT_EQ(kindOf(folder.fifo("fifo")), ErrorKind::notRegularFile);
    // Links on the way to the file are no links at it.
    folder.file("directory/inside", "inside");
    folder.link("way", "directory");
    EXPECT_EQ(kindOf(folder / "way/inside"), std::nullopt);
}

// What stands at the name may be exchanged between the look at it and the opening.
TEST_F(FileContentsTest, ALinkThatComesInBetweenIsNotFollowed)
{
    auto const wanted = folder.file("wanted", "wanted");
    folder.file("kept", "wanted");
    folder.file("other", "other");
    std::atomic<bool> isDone = false;
    std::thread exchanger([&] {
        for (int turn = 0; !isDone; ++turn) {
            auto const next = folder / ("next" + std::to_string(turn % 2));
            if (turn % 2 == 0 ? ::symlink("other", next.path().c_str()) == 0
                              : ::link((folder / "kept").path().c_str(), next.path().c_str()) == 0)
                std::rename(next.path().c_str(), wanted.path().c_str());
        }
    });
    int read = 0;
    for (int turn = 0; turn < 20000; ++turn) {
        auto const result = contents.readUnlessLink(wanted, 100);
        read += result.hasValue();
        ASSERT_TRUE(!result || result.value() == "wanted");
    }
    isDone = true;
    exchanger.join();
    EXPECT_GT(read, 0);
}

TEST_F(FileContentsTest, TellsWhatIsMissingFromWhatIsForbidden)
{
    EXPECT_EQ(failure(folder / "missing"), ErrorKind::notFound);
    EXPECT_EQ(failure(folder.link("dangling", "missing")), ErrorKind::notFound);
    folder.file("file");
    EXPECT_EQ(failure(folder / "file/below"), ErrorKind::notFound);
    EXPECT_EQ(failure(FileURL()), ErrorKind::notFound);
    EXPECT_EQ(failure(folder.link("loop", "loop")), ErrorKind::other);
    EXPECT_EQ(failure(FileURL("/" + std::string(10000, 'x'))), ErrorKind::other);

    auto const secret = folder.file("secret", "x");
    ASSERT_EQ(::chmod(secret.path().c_str(), 0), 0);
    ASSERT_EQ(::chmod(folder.url().path().c_str(), 0755), 0);
    EXPECT_EQ(askedWithoutPrivileges([&] {
        return failure(secret) == ErrorKind::noPermission ? std::string("forbidden") : std::string("something else");
    }),
        "forbidden");
}

TEST_F(FileContentsTest, AZeroByteDoesNotEndThePath)
{
    auto const file = folder.file("name", "x");
    EXPECT_EQ(failure(FileURL(file.path() + std::string("\0rest", 5))), ErrorKind::notFound);
}

TEST_F(FileContentsTest, TheMessageIsOneReadableSentence)
{
    auto const missing = contents.read(folder / "gone\xFF", 10);
    EXPECT_EQ(missing.error().message, "Could not read \u201Cgone\uFFFD\u201D: No such file or directory.");
    auto const directory = contents.read(folder.folder("directory"), 10);
    EXPECT_EQ(directory.error().message, "\u201Cdirectory\u201D is not a regular file.");
}

}
}
