#include "Freedesktop/Session/ApplicationTermination.h"
#include "Freedesktop/Session/ProcessIdentity.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <limits>
#include <utility>

namespace marrowick {

namespace {

class ProcessIdentityTest : public testing::Test {
protected:
    ProcessIdentityTest()
    {
        char program[] = "/bin/sleep";
        char duration[] = "100";
        char* const arguments[] = { program, duration, nullptr };
        EXPECT_EQ(posix_spawn(&pid_, program, nullptr, nullptr, arguments, environ), 0);
    }
    ~ProcessIdentityTest() override
    {
        if (pid_ != 0) {
            kill(pid_, SIGKILL);
            waitpid(pid_, nullptr, 0);
        }
    }

    bool runs() { return waitpid(pid_, nullptr, WNOHANG) == 0; }

    pid_t pid_ = 0;
};

ClientWindow window(xcb_window_t id, std::string const& wmClass, std::optional<pid_t> pid, bool isLocal = true)
{
    ClientWindow window;
    window.id = id;
    window.instanceName = wmClass;
    window.className = wmClass;
    window.pid = pid;
    window.isLocal = isLocal;
    return window;
}

}

TEST_F(ProcessIdentityTest, IsTheSameAsLongAsTheProcessRuns)
{
    auto const identity = identityOfProcess(pid_);
    ASSERT_TRUE(identity);
    EXPECT_EQ(identity->pid, pid_);
    EXPECT_GT(identity->latestStart, 0u);
    EXPECT_EQ(identity, identityOfProcess(pid_));
}

TEST_F(ProcessIdentityTest, ThereIsNoneForWhatMustNotBeKilled)
{
    for (pid_t const pid : { -1, 0, 1, getpid(), std::numeric_limits<pid_t>::max(), std::numeric_limits<pid_t>::min() })
        EXPECT_FALSE(identityOfProcess(pid)) << pid;
}

TEST_F(ProcessIdentityTest, ASignalReachesTheProcess)
{
    auto const identity = identityOfProcess(pid_);
    ASSERT_TRUE(identity);
    EXPECT_TRUE(sendSignal(*identity, SIGTERM));
    int status = 0;
    ASSERT_EQ(waitpid(std::exchange(pid_, 0), &status, 0), identity->pid);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
    EXPECT_FALSE(sendSignal(*identity, SIGTERM));
}

TEST_F(ProcessIdentityTest, ASignalNeverReachesALaterProcessOfThatNumber)
{
    auto identity = identityOfProcess(pid_);
    ASSERT_TRUE(identity);
    --identity->latestStart;
    EXPECT_FALSE(sendSignal(*identity, SIGKILL));
    EXPECT_FALSE(sendSignal({ 0, 0 }, SIGKILL));
    EXPECT_FALSE(sendSignal({ -1, 0 }, SIGKILL));
    EXPECT_TRUE(runs());
}

TEST_F(ProcessIdentityTest, AProcessThatWasSeenRunningIsReached)
{
    auto const moment = ticksSinceBoot();
    EXPECT_GE(moment, identityOfProcess(pid_)->latestStart);
    EXPECT_TRUE(sendSignal({ pid_, moment }, 0));
    // What starts later is not what was seen.
    while (ticksSinceBoot() <= moment)
        usleep(1000);
    auto const later = fork();
    if (later == 0) {
        for (;;)
            pause();
    }
    EXPECT_FALSE(sendSignal({ later, moment }, SIGKILL));
    EXPECT_TRUE(sendSignal({ later, ticksSinceBoot() }, SIGKILL));
    EXPECT_EQ(waitpid(later, nullptr, 0), later);
}

TEST_F(ProcessIdentityTest, AnotherUsersProcessIsNotOurs)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "Being another user needs root.";
    ASSERT_EQ(seteuid(12345), 0);
    auto const identity = identityOfProcess(pid_);
    EXPECT_FALSE(sendSignal({ pid_, ticksSinceBoot() }, 0));
    ASSERT_EQ(seteuid(0), 0);
    EXPECT_FALSE(identity);
}

TEST(WindowsOfApplication, AreThoseItHadAndLaterOnesOfItsProcess)
{
    ApplicationFacts facts;
    facts.windows = { window(1, "A", 10), window(2, "A", std::nullopt), window(3, "A", 20, false) };
    struct {
        char const* what;
        ClientWindow listed;
        bool isIts;
    } const rows[] = {
        { "the same window", window(1, "A", 10), true },
        { "a later window of the process", window(7, "A", 10), true },
        { "another application of the process", window(7, "B", 10), false },
        { "another process of the class", window(7, "A", 11), false },
        { "the number, given to another class", window(1, "B", 10), false },
        { "the number, given to another process", window(1, "A", 11), false },
        { "the same window that tells no process", window(2, "A", std::nullopt), true },
        { "another one that tells no process", window(7, "A", std::nullopt), false },
        { "the same window elsewhere", window(3, "A", 20, false), true },
        { "a later window elsewhere", window(7, "A", 20, false), false },
        { "a process here with a number from elsewhere", window(7, "A", 20), false },
    };
    for (auto const& row : rows)
        EXPECT_EQ(!windowsOfApplication(facts, { row.listed }).empty(), row.isIts) << row.what;
}

}
