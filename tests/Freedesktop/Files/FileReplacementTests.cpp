#include "Freedesktop/Files/FreedesktopFileContents.h"

#include "AsOtherUser.h"
#include "Fakes/TemporaryFolder.h"
#include "Support/ExchangeCoding.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <random>
#include <spawn.h>
#include <sstream>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace marrowick {
namespace {

using testing::ElementsAre;

constexpr std::size_t limit = 1 << 20;

/// A started program; the test ends it or waits for it.
class StartedProgram {
public:
    explicit StartedProgram(std::vector<std::string> words)
    {
        std::vector<char*> pointers;
        for (auto& word : words)
            pointers.push_back(word.data());
        pointers.push_back(nullptr);
        EXPECT_EQ(::posix_spawnp(&process_, pointers.front(), nullptr, nullptr, pointers.data(), environ), 0);
    }

    void kill() const { ::kill(process_, SIGKILL); }

    /// The exit status, or 128 and the signal for one that was killed.
    int wait() const
    {
        int status = 0;
        EXPECT_EQ(::waitpid(process_, &status, 0), process_);
        return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
    }

private:
    pid_t process_ = 0;
};

class FileReplacementTest : public testing::Test {
protected:
    std::optional<ErrorKind> failure(FileURL const& url, std::string_view content) const
    {
        auto const result = contents.replace(url, content);
        return result ? std::nullopt : std::optional(result.error().kind);
    }
    static mode_t modeOf(FileURL const& url)
    {
        struct stat status { };
        EXPECT_EQ(::lstat(url.path().c_str(), &status), 0);
        return status.st_mode & 07777U;
    }

    static ino_t inodeOf(FileURL const& url)
    {
        struct stat status { };
        EXPECT_EQ(::lstat(url.path().c_str(), &status), 0);
        return status.st_ino;
    }

    /// Runs the program that replaces the file `count` times, its calls disturbed as `strace` is told.
    int disturbed(int count, std::vector<std::string> const& injections) const
    {
        std::vector<std::string> words { "strace", "-f", "-qq", "-o", "/dev/null", "-e", "trace=all" };
        for (auto const& injection : injections)
            words.insert(words.end(), { "-e", "inject=" + injection });
        words.insert(words.end(), { REPLACING_PROGRAM, file.path(), std::to_string(count) });
        return StartedProgram(words).wait();
    }

    /// File systems that lack nothing, files without a name, or second names for them.
    std::vector<std::vector<std::string>> lacks() const
    {
        // Each replacement opens the nameless file, the folder, and where the first fails a file with a name.
        auto const each = ":when=" + std::to_string(openingOfNamelessFile()) + "+3";
        return { {}, { "openat:error=EOPNOTSUPP" + each }, { "openat:error=EISDIR" + each },
            { "linkat:error=ENOENT" } };
    }

    /// Which of the program's openings it is, the first one being 1.
    int openingOfNamelessFile() const
    {
        TemporaryFolder const place;
        auto const log = place.file("log");
        EXPECT_EQ(StartedProgram({ "strace", "-qq", "-o", log.path(), "-e", "trace=openat", REPLACING_PROGRAM,
                                     (place / "a.json").path(), "1" })
                      .wait(),
            0);
        std::istringstream lines(place.content("log"));
        int number = 1;
        for (std::string line; std::getline(lines, line) && line.find("O_TMPFILE") == std::string::npos;)
            ++number;
        EXPECT_TRUE(lines) << "no nameless file is opened";
        return number;
    }

    bool isWhole() const { return decodeSnapshot(folder.content("a.json")).has_value(); }

    static void SetUpTestSuite()
    {
        // The sanitizer's search for leaks gives up in a program that is traced.
        ::setenv("LSAN_OPTIONS", "detect_leaks=0", 1);
    }

    TemporaryFolder folder;
    FileURL const file = folder / "a.json";
    FreedesktopFileContents contents;
};

/// Reads a file again and again, as another program does that knows nothing of the writer.
class TirelessReader {
public:
    explicit TirelessReader(FileURL file)
        : file_(std::move(file))
        , thread_([this] { read(); })
    {
    }
    ~TirelessReader()
    {
        isDone_ = true;
        thread_.join();
    }

    int whole() const { return whole_; }
    /// How often what was there was no snapshot that the program has written.
    int broken() const { return broken_; }

private:
    bool isWhole(Result<std::string> const& content) const
    {
        auto const snapshot = content ? decodeSnapshot(content.value()) : std::nullopt;
        return snapshot && snapshot->roots.size() == 1
            && std::string_view(snapshot->roots.front().name)
            == std::to_string(snapshot->roots.front().children.size());
    }

    void read()
    {
        FreedesktopFileContents const contents;
        while (!isDone_)
            ++(isWhole(contents.read(file_, limit)) ? whole_ : broken_);
    }

    FileURL file_;
    std::atomic<bool> isDone_ = false;
    std::atomic<int> whole_ = 0;
    std::atomic<int> broken_ = 0;
    std::thread thread_;
};

TEST_F(FileReplacementTest, MakesTheFileAndTakesItsPlace)
{
    std::string const bytes("a\0\xFF\n", 4);
    EXPECT_EQ(failure(file, bytes), std::nullopt);
    EXPECT_EQ(folder.content("a.json"), bytes);
    std::string const large(3'000'000, 'x');
    EXPECT_EQ(failure(file, large), std::nullopt);
    EXPECT_EQ(folder.content("a.json"), large);
    EXPECT_EQ(failure(file, ""), std::nullopt);
    EXPECT_EQ(folder.content("a.json"), "");
    EXPECT_EQ(failure(folder / "broken \xFF\nname", "x"), std::nullopt);
    EXPECT_THAT(folder.names(""), ElementsAre("a.json", "broken \xFF\nname"));
}

TEST_F(FileReplacementTest, WhoeverHasTheOldFileOpenKeepsIt)
{
    folder.file("a.json", "old");
    int const old = ::open(file.path().c_str(), O_RDONLY | O_CLOEXEC);
    EXPECT_EQ(failure(file, "new content"), std::nullopt);
    char content[20] {};
    EXPECT_EQ(::read(old, content, sizeof content), 3);
    EXPECT_STREQ(content, "old");
    ::close(old);
}

TEST_F(FileReplacementTest, ModeIsThatOfAnyFileThatTheUserMakes)
{
    auto const previous = ::umask(027);
    EXPECT_EQ(failure(file, "x"), std::nullopt);
    EXPECT_EQ(modeOf(file), 0640U);
    ::umask(0);
    EXPECT_EQ(failure(file, "y"), std::nullopt);
    EXPECT_EQ(modeOf(file), 0666U);
    ::umask(previous);
}

TEST_F(FileReplacementTest, LinkIsReplacedAndWhatItLeadsToStays)
{
    folder.file("target", "target");
    folder.link("a.json", "target");
    EXPECT_EQ(failure(file, "new"), std::nullopt);
    EXPECT_EQ(folder.content("target"), "target");
    struct stat status { };
    ASSERT_EQ(::lstat(file.path().c_str(), &status), 0);
    EXPECT_TRUE(S_ISREG(status.st_mode));
    folder.link("dangling", "missing");
    EXPECT_EQ(failure(folder / "dangling", "new"), std::nullopt);
    EXPECT_THAT(folder.names(""), ElementsAre("a.json", "dangling", "target"));
}

TEST_F(FileReplacementTest, DirectoryIsNeverReplaced)
{
    folder.folder("full/inside");
    EXPECT_EQ(failure(folder / "full", "x"), ErrorKind::other);
    EXPECT_EQ(failure(folder.folder("empty"), "x"), ErrorKind::other);
    EXPECT_EQ(failure(folder.url(), "x"), ErrorKind::other);
    EXPECT_THAT(folder.names(""), ElementsAre("empty", "full"));
    EXPECT_THAT(folder.names("full"), ElementsAre("inside"));
}

TEST_F(FileReplacementTest, FailureNamesItsReasonAndLeavesNothing)
{
    EXPECT_EQ(failure(folder / "missing/a.json", "x"), ErrorKind::notFound);
    EXPECT_EQ(failure(FileURL(), "x"), ErrorKind::notFound);
    EXPECT_EQ(failure(FileURL("relative"), "x"), ErrorKind::notFound);
    EXPECT_EQ(failure(FileURL(folder.url().path() + std::string("/a\0b", 4)), "x"), ErrorKind::notFound);
    EXPECT_EQ(failure(folder / std::string(300, 'x'), "x"), ErrorKind::other);
    folder.file("file");
    EXPECT_NE(failure(folder / "file/a.json", "x"), std::nullopt);
    EXPECT_THAT(folder.names(""), ElementsAre("file"));
    auto const result = contents.replace(folder / "missing/a\xFF.json", "x");
    EXPECT_EQ(result.error().message, "Could not write \u201Ca\uFFFD.json\u201D: No such file or directory.");
}

TEST_F(FileReplacementTest, FolderThatMayNotBeWrittenToKeepsTheOldFile)
{
    auto const closed = folder.folder("closed");
    folder.file("closed/a.json", "old");
    ASSERT_EQ(::chmod(folder.url().path().c_str(), 0755), 0);
    ASSERT_EQ(::chmod(closed.path().c_str(), 0555), 0);
    EXPECT_EQ(askedWithoutPrivileges([&]() -> std::string {
        return failure(folder / "closed/a.json", "x") == ErrorKind::noPermission ? "forbidden" : "something else";
    }),
        "forbidden");
    EXPECT_EQ(folder.content("closed/a.json"), "old");
    ASSERT_EQ(::chmod(closed.path().c_str(), 0755), 0);
    EXPECT_THAT(folder.names("closed"), ElementsAre("a.json"));
}

TEST_F(FileReplacementTest, FolderThatMayBeWrittenToButNotListedIsEnough)
{
    auto const blind = folder.folder("blind");
    ASSERT_EQ(::chmod(folder.url().path().c_str(), 0755), 0);
    ASSERT_EQ(::chmod(blind.path().c_str(), 0333), 0);
    EXPECT_EQ(askedWithoutPrivileges([&]() -> std::string {
        auto const outcome = contents.replace(folder / "blind/a.json", "x");
        return outcome ? "done" : outcome.error().message;
    }),
        "done");
    ASSERT_EQ(::chmod(blind.path().c_str(), 0755), 0);
    EXPECT_THAT(folder.names("blind"), ElementsAre("a.json"));
}

TEST_F(FileReplacementTest, ReaderNeverSeesAnythingButAWholeFile)
{
    ASSERT_EQ(StartedProgram({ REPLACING_PROGRAM, file.path(), "1" }).wait(), 0);
    TirelessReader const reader(file);
    EXPECT_EQ(StartedProgram({ REPLACING_PROGRAM, file.path(), "1000" }).wait(), 0);
    std::mt19937 random(7);
    for (int kills = 0; kills < 100; ++kills) {
        auto const before = inodeOf(file);
        StartedProgram const program({ REPLACING_PROGRAM, file.path(), "1000000" });
        while (inodeOf(file) == before)
            std::this_thread::yield();
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 2000));
        program.kill();
        EXPECT_EQ(program.wait(), 128 + SIGKILL);
        EXPECT_LE(folder.names("").size(), 2U);
    }
    EXPECT_GT(reader.whole(), 1000);
    EXPECT_EQ(reader.broken(), 0);
    EXPECT_EQ(failure(file, "x"), std::nullopt);
    EXPECT_THAT(folder.names(""), ElementsAre("a.json"));
}

TEST_F(FileReplacementTest, OfSeveralWritersAtATimeEachWritesAWholeFile)
{
    ASSERT_EQ(StartedProgram({ REPLACING_PROGRAM, file.path(), "1" }).wait(), 0);
    {
        TirelessReader const reader(file);
        std::vector<StartedProgram> programs;
        for (int number = 0; number < 3; ++number)
            programs.emplace_back(std::vector<std::string> { REPLACING_PROGRAM, file.path(), "150" });
        auto const whole = folder.content("a.json");
        std::atomic<int> failures = 0;
        std::vector<std::thread> threads;
        for (int number = 0; number < 3; ++number) {
            threads.emplace_back([&] {
                for (int round = 0; round < 150; ++round)
                    failures += failure(file, whole).has_value();
            });
        }
        for (auto& thread : threads)
            thread.join();
        for (auto const& program : programs)
            EXPECT_EQ(program.wait(), 0);
        EXPECT_EQ(failures, 0);
        EXPECT_EQ(reader.broken(), 0);
        EXPECT_GT(reader.whole(), 100);
    }
    EXPECT_THAT(folder.names(""), ElementsAre("a.json"));
}

TEST_F(FileReplacementTest, FileSystemWithoutNamelessFilesWillDo)
{
    for (auto const& lack : lacks()) {
        EXPECT_EQ(disturbed(3, lack), 0);
        EXPECT_TRUE(isWhole());
        EXPECT_THAT(folder.names(""), ElementsAre("a.json"));
        folder.remove("a.json");
    }
}

TEST_F(FileReplacementTest, KillAtAnyStepLeavesTheOldFileAndOneLeftoverAtMost)
{
    auto const isKill = [](int status) { return status == 128 + SIGKILL; };
    for (auto const& lack : lacks()) {
        ASSERT_EQ(disturbed(1, lack), 0);
        int kills = 0;
        for (auto const* const call : { "write", "fdatasync", "unlink", "rename" }) {
            for (int turn = 1; turn <= 4; ++turn) {
                auto injections = lack;
                injections.push_back("/^" + std::string(call) + "(at)?$:signal=KILL:when=" + std::to_string(turn));
                kills += isKill(disturbed(4, injections));
                EXPECT_TRUE(isWhole()) << call << turn;
                EXPECT_LE(folder.names("").size(), 2U) << call << turn;
            }
        }
        EXPECT_EQ(kills, 16);
        EXPECT_EQ(failure(file, "x"), std::nullopt);
        EXPECT_THAT(folder.names(""), ElementsAre("a.json"));
    }
}

TEST_F(FileReplacementTest, FailureAtAnyStepLeavesTheOldFileAndNothingElse)
{
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "The sanitizer's own writing is disturbed, too; without it the test runs.";
#endif
    folder.file("a.json", "old");
    for (auto const& lack : lacks()) {
        for (auto const* const failing : { "write:error=ENOSPC", "fdatasync:error=EIO", "/^rename:error=EIO" }) {
            auto injections = lack;
            injections.emplace_back(failing);
            EXPECT_EQ(disturbed(1, injections), EXIT_FAILURE) << failing;
            EXPECT_EQ(folder.content("a.json"), "old") << failing;
            EXPECT_THAT(folder.names(""), ElementsAre("a.json")) << failing;
        }
    }
}

TEST_F(FileReplacementTest, WriterThatHoldsTheFolderDoesNotKeepOthersFromWriting)
{
    int const held = ::open(folder.url().path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    ASSERT_EQ(::flock(held, LOCK_EX), 0);
    EXPECT_EQ(failure(file, "x"), std::nullopt);
    EXPECT_EQ(disturbed(1, { "linkat:error=ENOENT" }), 0);
    ::close(held);
    EXPECT_TRUE(isWhole());
    EXPECT_EQ(disturbed(1, { "linkat:error=EOPNOTSUPP", "flock:error=ENOLCK" }), 0);
    EXPECT_TRUE(isWhole());
    EXPECT_THAT(folder.names(""), ElementsAre("a.json"));
}

}
}
