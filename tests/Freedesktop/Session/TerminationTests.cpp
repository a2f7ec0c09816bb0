#include "Fakes/TemporaryFolder.h"
#include "Freedesktop/Session/DesktopFixtures.h"

#include <QCoreApplication>
#include <QTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>

namespace marrowick {

namespace {

/// How a program ended, as `waitpid` tells it.
struct End {
    int status = 0;

    bool isByItself(int code) const { return WIFEXITED(status) && WEXITSTATUS(status) == code; }
    bool isBySignal(int signal) const { return WIFSIGNALED(status) && WTERMSIG(status) == signal; }
};

/// A desktop with a real window manager and a real program.
class TerminationTest : public ManagedDesktopTest {
protected:
    void start(std::vector<std::string> const& options = {})
    {
        std::vector<std::string> command { CLIENT_PROGRAM, "Client", asked() };
        command.insert(command.end(), options.begin(), options.end());
        client_ = std::make_unique<StartedProgram>(command);
        ASSERT_TRUE(waitFor([&] { return isListed(); }));
    }

    std::string asked() { return folder_.url().path() + "/asked"; }
    bool wasAsked()
    {
        stir();
        return std::filesystem::exists(asked());
    }

    bool isListed()
    {
        auto const all = identifiers();
        return std::find(all.begin(), all.end(), "Client") != all.end();
    }

    bool allWindowsTellTheirProcess()
    {
        auto const windows = display_.numbers(display_.root(), "_NET_CLIENT_LIST");
        return std::all_of(windows.begin(), windows.end(),
            [&](xcb_window_t window) { return !display_.numbers(window, "_NET_WM_PID").empty(); });
    }

    /// Absent where it goes on.
    std::optional<End> waitForEnd()
    {
        End end;
        if (!waitFor([&] {
                stir();
                return waitpid(client_->pid(), &end.status, WNOHANG) == client_->pid();
            }))
            return std::nullopt;
        client_->forget();
        return end;
    }

    bool runs(pid_t pid) { return waitpid(pid, nullptr, WNOHANG) == 0; }

    TemporaryFolder folder_;
    std::unique_ptr<StartedProgram> client_;
};

/// A desktop whose window manager is the test.
class AnnouncedTerminationTest : public RunningApplicationsTest { };

/// Runs the event loop of the whole program; whether `step` ended it.
bool endsTheProgram(std::function<void()> const& step)
{
    constexpr int notEnded = 77;
    QTimer::singleShot(0, QCoreApplication::instance(), step);
    QTimer guard;
    guard.setSingleShot(true);
    QObject::connect(&guard, &QTimer::timeout, QCoreApplication::instance(), [] { QCoreApplication::exit(notEnded); });
    guard.start(10'000);
    return QCoreApplication::exec() == 0;
}

}

TEST_F(TerminationTest, AProgramThatIsAskedMayEndItself)
{
    start();
    find("Client")->terminate();
    auto const end = waitForEnd();
    ASSERT_TRUE(end);
    EXPECT_TRUE(end->isByItself(0));
    EXPECT_TRUE(wasAsked());
}

TEST_F(TerminationTest, AProgramThatStaysIsEndedByForceAlone)
{
    start({ "--stays" });
    auto const application = find("Client");
    application->terminate();
    ASSERT_TRUE(waitFor([&] { return wasAsked(); }));
    EXPECT_TRUE(runs(client_->pid()));
    EXPECT_TRUE(isListed());
    application->forceTerminate();
    auto const end = waitForEnd();
    ASSERT_TRUE(end);
    EXPECT_TRUE(end->isBySignal(SIGKILL));
}

TEST_F(TerminationTest, AProgramThatOnlyHidesIsAskedOnceMoreByASignal)
{
    start({ "--hides" });
    auto const application = find("Client");
    application->terminate();
    ASSERT_TRUE(waitFor([&] { return wasAsked() && !isListed(); }));
    EXPECT_TRUE(runs(client_->pid()));
    application->terminate();
    auto const end = waitForEnd();
    ASSERT_TRUE(end);
    EXPECT_TRUE(end->isBySignal(SIGTERM));
}

TEST_F(TerminationTest, AProgramThatHidIsEndedByForce)
{
    start({ "--hides" });
    auto const application = find("Client");
    application->terminate();
    ASSERT_TRUE(waitFor([&] { return wasAsked() && !isListed(); }));
    application->forceTerminate();
    auto const end = waitForEnd();
    ASSERT_TRUE(end);
    EXPECT_TRUE(end->isBySignal(SIGKILL));
}

TEST_F(TerminationTest, AWindowThatTellsNoProcessIsCutOff)
{
    start({ "--stays", "--tells-no-pid" });
    find("Client")->forceTerminate();
    auto const end = waitForEnd();
    ASSERT_TRUE(end);
    EXPECT_TRUE(end->isByItself(3));
}

TEST_F(TerminationTest, AProcessOfTheSameNumberHereIsNotTheOneElsewhere)
{
    StartedProgram const bystander({ "/bin/sleep", "100" });
    start({ "--stays", "--elsewhere", std::to_string(bystander.pid()) });
    find("Client")->forceTerminate();
    auto const end = waitForEnd();
    ASSERT_TRUE(end);
    EXPECT_TRUE(end->isByItself(3));
    EXPECT_TRUE(runs(bystander.pid()));
}

TEST_F(TerminationTest, ATerminalEmulatorIsEnded)
{
    for (bool const byForce : { false, true }) {
        client_ = std::make_unique<StartedProgram>(
            std::vector<std::string> { "xterm", "-class", "Client", "-e", "sleep", "100" });
        // It says whose its window is, by several properties, after that has come.
        auto const started = std::chrono::steady_clock::now();
        ASSERT_TRUE(waitFor([&] {
            bool const isSettled = std::chrono::steady_clock::now() - started > std::chrono::milliseconds(700);
            return isSettled && isListed() && allWindowsTellTheirProcess();
        }));
        auto const application = find("Client");
        if (byForce)
            application->forceTerminate();
        else
            application->terminate();
        EXPECT_TRUE(waitForEnd()) << byForce;
        EXPECT_TRUE(waitFor([&] { return !isListed(); }));
    }
}

TEST_F(TerminationTest, AProgramThatHasEndedIsLeftInPeace)
{
    start();
    auto const application = find("Client");
    client_->end(SIGKILL);
    ASSERT_TRUE(waitFor([&] { return !isListed(); }));
    // Another one of the same class that the list did not know.
    start({ "--stays" });
    application->terminate();
    application->forceTerminate();
    find("Client")->terminate();
    ASSERT_TRUE(waitFor([&] { return wasAsked(); }));
    EXPECT_TRUE(waitFor([&] { return !folder_.content("asked").empty(); }));
    EXPECT_EQ(folder_.content("asked"), "asked\n");
    EXPECT_TRUE(runs(client_->pid()));
}

TEST_F(AnnouncedTerminationTest, EachWindowIsAskedForInTheUsersName)
{
    StartedProgram const process({ "/bin/sleep", "100" });
    auto const first = display_.makeWindow("a", "A");
    auto const other = display_.makeWindow("b", "B");
    auto const second = display_.makeWindow("a", "A");
    auto const later = display_.makeWindow("a", "A");
    auto const stranger = display_.makeWindow("a", "A");
    for (auto const window : { first, other, second, later })
        display_.setPID(window, process.pid());
    display_.announce({ first, other, second });
    auto const application = find("A");
    display_.announce({ first, other, second, later, stranger });
    display_.hearMessages();
    application->terminate();

    auto const messages = display_.waitForMessages("_NET_CLOSE_WINDOW", 3);
    ASSERT_EQ(messages.size(), 3u);
    EXPECT_EQ(messages[0].window, first);
    EXPECT_EQ(messages[1].window, second);
    EXPECT_EQ(messages[2].window, later);
    for (auto const& message : messages) {
        EXPECT_NE(message.data[0], XCB_CURRENT_TIME);
        EXPECT_EQ(message.data[1], 2u);
    }
    EXPECT_EQ(waitpid(process.pid(), nullptr, WNOHANG), 0);
}

TEST_F(AnnouncedTerminationTest, AProcessThatShowsAnotherApplicationIsNotSignalled)
{
    StartedProgram const process({ "/bin/sleep", "100" });
    auto const window = display_.makeWindow("a", "A");
    auto const other = display_.makeWindow("b", "B");
    display_.setPID(window, process.pid());
    display_.setPID(other, process.pid());
    display_.announce({ window, other });
    auto const application = find("A");
    display_.announce({ other });
    application->terminate();
    EXPECT_EQ(waitpid(process.pid(), nullptr, WNOHANG), 0);

    display_.announce({});
    application->terminate();
    int status = 0;
    EXPECT_TRUE(waitFor([&] { return waitpid(process.pid(), &status, WNOHANG) == process.pid(); }));
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
}

TEST_F(AnnouncedTerminationTest, EndingThisProgramIsQuitting)
{
    auto const byName = display_.makeWindow("marrowick", "org.marrowick.Marrowick");
    auto const byProcess = display_.makeWindow("x", "X");
    display_.setPID(byProcess, getpid());
    for (auto const window : { byName, byProcess }) {
        display_.announce({ window });
        auto const application = find("org.marrowick.Marrowick");
        EXPECT_TRUE(endsTheProgram([&] { application->terminate(); }));
        EXPECT_TRUE(endsTheProgram([&] { application->forceTerminate(); }));
    }
}

}
