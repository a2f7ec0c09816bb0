#include "Fakes/TemporaryFolder.h"
#include "Freedesktop/Session/DesktopFixtures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace marrowick {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A desktop whose windows the test announces, and programs of installed applications that have none.
class BackgroundApplicationsTest : public RunningApplicationsTest {
protected:
    ~BackgroundApplicationsTest() override
    {
        for (auto const& entry : installed_)
            std::filesystem::remove(entry);
    }

    /// Installs an application whose program waits.
    void install(std::string const& name, std::string const& more = {})
    {
        auto const program = programOf(name);
        std::filesystem::copy_file("/bin/sleep", program);
        auto const entry = environmentVariable("XDG_DATA_HOME") + "/applications/" + name + ".desktop";
        writeFile(entry, "[Desktop Entry]\nType=Application\nName=The " + name + "\nExec=" + program + " %U\n" + more);
        installed_.push_back(entry);
    }

    std::string programOf(std::string const& name) { return folder_.url().path() + "/" + name; }

    std::unique_ptr<StartedProgram> start(std::string const& name)
    {
        auto program = std::make_unique<StartedProgram>(std::vector<std::string> { programOf(name), "100" });
        auto const link = "/proc/" + std::to_string(program->pid()) + "/exe";
        EXPECT_TRUE(waitFor([&] {
            std::error_code error;
            return std::filesystem::read_symlink(link, error) == programOf(name);
        }));
        return program;
    }

    /// The signal that ended it; absent where it goes on.
    static std::optional<int> signalThatEnded(StartedProgram& program)
    {
        int status = 0;
        if (!waitFor([&] { return waitpid(program.pid(), &status, WNOHANG) == program.pid(); }))
            return std::nullopt;
        program.forget();
        return WIFSIGNALED(status) ? std::optional(WTERMSIG(status)) : std::nullopt;
    }

    static bool runs(StartedProgram const& program) { return waitpid(program.pid(), nullptr, WNOHANG) == 0; }

    TemporaryFolder folder_;
    std::vector<std::string> installed_;
};

}

TEST_F(BackgroundApplicationsTest, AProcessWithoutAWindowHasNoneAndStandsBehindThoseThatHave)
{
    install("marrowick-waiter");
    auto const process = start("marrowick-waiter");
    auto const window = display_.makeWindow("a", "A");
    display_.announce({ window, display_.makeWindow("z", "Z") }, window);
    EXPECT_THAT(identifiers(), ElementsAre("A", "Z", "marrowick-waiter"));
    auto const application = find("marrowick-waiter");
    EXPECT_EQ(application->activationPolicy(), ActivationPolicy::prohibited);
    EXPECT_EQ(application->localizedName(), "The marrowick-waiter");
    EXPECT_EQ(application->bundleURL(), FileURL(installed_.front()));
    EXPECT_EQ(application->icon(), Image::iconForFile(FileURL(installed_.front()), 0));
    EXPECT_FALSE(application->isActive());
    EXPECT_FALSE(application->isHidden());
}

TEST_F(BackgroundApplicationsTest, WhereTheyAreLeftOutNoProcessIsLookedFor)
{
    install("marrowick-waiter");
    auto const process = start("marrowick-waiter");
    auto const window = display_.makeWindow("a", "A");
    display_.announce({ window }, window);
    auto const shown = workspace_.runningApplications(BackgroundOnly::leftOut);
    ASSERT_EQ(shown.size(), 1U);
    EXPECT_EQ(shown.front()->bundleIdentifier(), "A");
    EXPECT_EQ(workspace_.runningApplications(BackgroundOnly::included).size(), 2U);
}

TEST_F(BackgroundApplicationsTest, InTheOrderOfTheirStartsEachApplicationOnce)
{
    install("marrowick-waiter-a");
    install("marrowick-waiter-b");
    auto const first = start("marrowick-waiter-b");
    // Starts are told apart by hundredths of a second.
    auto const startedAt = std::chrono::steady_clock::now();
    waitFor([&] { return std::chrono::steady_clock::now() - startedAt > std::chrono::milliseconds(40); });
    auto const second = start("marrowick-waiter-a");
    auto const third = start("marrowick-waiter-b");
    EXPECT_THAT(identifiers(), ElementsAre("marrowick-waiter-b", "marrowick-waiter-a"));
}

TEST_F(BackgroundApplicationsTest, WithAWindowItIsNoBackgroundApplication)
{
    install("marrowick-waiter", "StartupWMClass=Waiter\n");
    auto const process = start("marrowick-waiter");
    auto const other = start("marrowick-waiter");
    auto const window = display_.makeWindow("w", "Waiter");
    display_.setPID(window, process->pid());
    display_.announce({ window });
    EXPECT_THAT(identifiers(), ElementsAre("marrowick-waiter"));
    EXPECT_EQ(find("marrowick-waiter")->activationPolicy(), ActivationPolicy::regular);
    display_.announce({});
    EXPECT_THAT(identifiers(), ElementsAre("marrowick-waiter"));
    EXPECT_EQ(find("marrowick-waiter")->activationPolicy(), ActivationPolicy::prohibited);
}

TEST_F(BackgroundApplicationsTest, AProgramOfNoShownApplicationIsNotListed)
{
    install("marrowick-waiter", "NoDisplay=true\n");
    install("marrowick-stranger");
    std::filesystem::remove(installed_.back());
    auto const quiet = start("marrowick-waiter");
    auto const stranger = start("marrowick-stranger");
    EXPECT_THAT(identifiers(), IsEmpty());
}

TEST_F(BackgroundApplicationsTest, AskedToQuitAllItsProcessesGetTheSignal)
{
    install("marrowick-waiter");
    install("marrowick-bystander");
    auto const first = start("marrowick-waiter");
    auto const second = start("marrowick-waiter");
    auto const bystander = start("marrowick-bystander");
    auto const application = find("marrowick-waiter");
    application->activate(ActivationOptions::allWindows);
    application->terminate();
    EXPECT_EQ(signalThatEnded(*first), SIGTERM);
    EXPECT_EQ(signalThatEnded(*second), SIGTERM);
    EXPECT_TRUE(runs(*bystander));
    EXPECT_THAT(identifiers(), ElementsAre("marrowick-bystander"));
    application->terminate();
    application->forceTerminate();
    EXPECT_TRUE(runs(*bystander));
}

TEST_F(BackgroundApplicationsTest, ForcedToQuitItIsKilled)
{
    install("marrowick-waiter");
    auto const process = start("marrowick-waiter");
    find("marrowick-waiter")->forceTerminate();
    EXPECT_EQ(signalThatEnded(*process), SIGKILL);
}

TEST_F(BackgroundApplicationsTest, AProcessThatShowsAWindowMeanwhileGetsNoSignal)
{
    install("marrowick-waiter");
    install("marrowick-last");
    auto const last = start("marrowick-last");
    auto const process = start("marrowick-waiter");
    auto const application = find("marrowick-waiter");
    auto const window = display_.makeWindow("a", "A");
    display_.setPID(window, process->pid());
    display_.announce({ window });
    application->terminate();
    // Has its signal later than the other would have.
    find("marrowick-last")->terminate();
    EXPECT_EQ(signalThatEnded(*last), SIGTERM);
    EXPECT_TRUE(runs(*process));
}

}
