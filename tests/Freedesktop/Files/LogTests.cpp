#include "Freedesktop/Files/FreedesktopLog.h"

#include "Platform/LogContract.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <set>
#include <sstream>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace marrowick {
namespace {

std::vector<std::string> linesOf(std::string const& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

/// A file in the place of standard error.
class StandardErrorFile {
public:
    StandardErrorFile()
        : file_(std::tmpfile())
        , saved_(::dup(STDERR_FILENO))
    {
        ::dup2(::fileno(file_), STDERR_FILENO);
    }
    ~StandardErrorFile()
    {
        ::dup2(saved_, STDERR_FILENO);
        ::close(saved_);
        std::fclose(file_);
    }
    StandardErrorFile(StandardErrorFile const&) = delete;
    StandardErrorFile& operator=(StandardErrorFile const&) = delete;

    std::string content() const
    {
        std::string text(1 << 20, '\0');
        auto const count = ::pread(::fileno(file_), text.data(), text.size(), 0);
        text.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        return text;
    }

private:
    std::FILE* file_;
    int saved_;
};

/// Runs `body` in a process of its own; returns its wait status. A child that hangs is ended by an alarm.
template<typename Body>
int statusOfChild(Body const& body)
{
    pid_t const child = ::fork();
    if (child == 0) {
        ::alarm(30);
        body();
        ::_exit(0);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    return status;
}

TEST(FreedesktopLog, KeepsThePromises)
{
    StandardErrorFile const standardError;
    FreedesktopLog log;
    contract::logKeepsItsPromises(log, [&] { return linesOf(standardError.content()); });
}

TEST(FreedesktopLog, EscapesControlCharactersOnly)
{
    struct Row {
        std::string_view message;
        char const* line;
    };
    Row const rows[] = {
        { "caf\xC3\xA9 \xE2\x82\xAC", "caf\xC3\xA9 \xE2\x82\xAC" },
        { "\x1B[31m", "\\x1B[31m" },
        { "csi \xC2\x9B"
          "31m",
            "csi \\xC2\\x9B31m" },
        { "next line \xC2\x85", "next line \\xC2\\x85" },
        { "no-break space \xC2\xA0", "no-break space \xC2\xA0" },
        { "cut \xC2", "cut \xC2" },
        { "bare \x9B \xFF", "bare \x9B \xFF" },
        { { "nul\0", 4 }, "nul\\x00" },
    };
    for (auto const& row : rows)
        EXPECT_EQ(escapedForLog(row.message), row.line);
}

TEST(FreedesktopLog, LinesOfSeveralThreadsStayWhole)
{
    StandardErrorFile const standardError;
    FreedesktopLog log;
    std::vector<std::thread> threads;
    std::multiset<std::string> expected;
    for (char letter = 'a'; letter < 'e'; ++letter) {
        std::string const line(300, letter);
        for (int i = 0; i < 100; ++i)
            expected.insert(line);
        threads.emplace_back([&log, line] {
            for (int i = 0; i < 100; ++i)
                log.write(line);
        });
    }
    for (auto& thread : threads)
        thread.join();
    auto const lines = linesOf(standardError.content());
    EXPECT_EQ((std::multiset<std::string>(lines.begin(), lines.end())), expected);
}

// One line is one record, as a datagram shows.
TEST(FreedesktopLog, ALineIsOneWrite)
{
    int ends[2];
    ASSERT_EQ(::socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends), 0);
    int const status = statusOfChild([&] {
        ::dup2(ends[1], STDERR_FILENO);
        FreedesktopLog().write("several\nparts \x01 and more");
    });
    EXPECT_EQ(status, 0);
    std::string record(200, '\0');
    record.resize(static_cast<std::size_t>(::recv(ends[0], record.data(), record.size(), 0)));
    EXPECT_EQ(record, "several\\x0Aparts \\x01 and more\n");
    ::close(ends[0]);
    ::close(ends[1]);
}

TEST(FreedesktopLog, SurvivesAReaderThatIsGone)
{
    EXPECT_EQ(statusOfChild([] {
        int ends[2];
        if (::pipe(ends) != 0)
            ::_exit(1);
        std::signal(SIGPIPE, SIG_DFL);
        ::dup2(ends[1], STDERR_FILENO);
        ::close(ends[0]);
        ::close(ends[1]);
        FreedesktopLog log;
        log.write("nobody");
        log.write("reads this");
        // The signal is neither delivered nor left waiting.
        sigset_t pending;
        sigpending(&pending);
        if (sigismember(&pending, SIGPIPE))
            ::_exit(2);
    }),
        0);
}

TEST(FreedesktopLog, LeavesASignalAloneThatWaitedBefore)
{
    EXPECT_EQ(statusOfChild([] {
        sigset_t brokenPipe;
        sigemptyset(&brokenPipe);
        sigaddset(&brokenPipe, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &brokenPipe, nullptr);
        std::raise(SIGPIPE);
        int const nothing = ::open("/dev/null", O_WRONLY);
        ::dup2(nothing, STDERR_FILENO);
        FreedesktopLog().write("line");
        sigset_t pending;
        sigpending(&pending);
        if (!sigismember(&pending, SIGPIPE))
            ::_exit(2);
    }),
        0);
}

TEST(FreedesktopLog, DropsLinesThatNobodyReads)
{
    auto const start = std::chrono::steady_clock::now();
    EXPECT_EQ(statusOfChild([] {
        int ends[2];
        if (::pipe2(ends, O_NONBLOCK) != 0)
            ::_exit(1);
        ::dup2(ends[1], STDERR_FILENO);
        FreedesktopLog log;
        std::string const line(60000, 'x');
        for (int i = 0; i < 4; ++i)
            log.write(line);
    }),
        0);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

TEST(FreedesktopLog, WaitsForAReaderThatIsSlow)
{
    int ends[2];
    ASSERT_EQ(::pipe2(ends, O_NONBLOCK), 0);
    std::string const line(200000, 'y');
    pid_t const child = ::fork();
    if (child == 0) {
        ::alarm(30);
        ::dup2(ends[1], STDERR_FILENO);
        FreedesktopLog().write(line);
        ::_exit(0);
    }
    ::close(ends[1]);
    ::fcntl(ends[0], F_SETFL, 0);
    std::string read;
    std::string part(1 << 16, '\0');
    for (ssize_t count; (count = ::read(ends[0], part.data(), part.size())) > 0;)
        read.append(part, 0, static_cast<std::size_t>(count));
    ::close(ends[0]);
    ::waitpid(child, nullptr, 0);
    EXPECT_EQ(read, line + '\n');
}

TEST(FreedesktopLog, NoFileTakesThePlaceOfAClosedStandardError)
{
    // Also where the next free place is another one.
    for (bool const alsoInput : { false, true }) {
        EXPECT_EQ(statusOfChild([&] {
            ::close(STDERR_FILENO);
            if (alsoInput)
                ::close(STDIN_FILENO);
            FreedesktopLog log;
            std::FILE* const files[] = { std::tmpfile(), std::tmpfile() };
            log.write("must not land in a file");
            char byte;
            for (std::FILE* const file : files) {
                if (::fileno(file) == STDERR_FILENO || ::pread(::fileno(file), &byte, 1, 0) != 0)
                    ::_exit(3);
            }
        }),
            0);
    }
    EXPECT_EQ(statusOfChild([] {
        FreedesktopLog log;
        ::close(STDERR_FILENO);
        log.write("closed later");
    }),
        0);
}

}
}
