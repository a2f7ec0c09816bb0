#include "Actions/ScriptRunner.h"
#include "Fakes/TestPlatform.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

using Words = std::vector<std::string>;
std::vector<FileURL> const twoFiles { FileURL("/s/first one"), FileURL("/s/-\xFF\n") };

class ScriptRunnerTest : public PlatformTest {
protected:
    /// The one process that running the script starts.
    Task started(char const* script, std::vector<FileURL> const& selection = {},
        std::optional<FileURL> const& clickedWindow = std::nullopt)
    {
        auto& launched = desktop.tasks.launched;
        launched.clear();
        ScriptRunner::run(FileURL(script), selection, clickedWindow);
        EXPECT_EQ(launched.size(), 1u);
        return launched.empty() ? Task {} : launched.front();
    }
};

TEST_F(ScriptRunnerTest, AShellScriptGetsTheSelectedPathsAfterItsOwn)
{
    auto const task = started("/a/x.sh", twoFiles);
    EXPECT_EQ(task.executable, FileURL("/bin/sh"));
    EXPECT_EQ(task.arguments, (Words { "/a/x.sh", "/s/first one", "/s/-\xFF\n" }));
    EXPECT_EQ(task.environment.at("MW_NARGS"), "2");
}

TEST_F(ScriptRunnerTest, ACompiledScriptGetsOnlyItsOwnPathAndTheCount)
{
    auto const task = started("/a/x.scpt", { FileURL("/s/1"), FileURL("/s/2"), FileURL("/s/3") });
    EXPECT_EQ(task.executable, FileURL("/usr/bin/osascript"));
    EXPECT_EQ(task.arguments, (Words { "/a/x.scpt" }));
    EXPECT_EQ(task.environment.at("MW_NARGS"), "3");
}

TEST_F(ScriptRunnerTest, TheCountIsZeroWhenNothingIsSelected)
{
    for (char const* script : { "/a/x.sh", "/a/x.scpt" }) {
        auto const task = started(script);
        EXPECT_EQ(task.arguments, (Words { script }));
        EXPECT_EQ(task.environment, (TaskEnvironment { { "MW_NARGS", "0" } }));
    }
}

TEST_F(ScriptRunnerTest, TheCountIsDecimal)
{
    std::vector<FileURL> const selection(123, FileURL("/s/file"));
    auto const task = started("/a/x.sh", selection);
    EXPECT_EQ(task.environment.at("MW_NARGS"), "123");
    EXPECT_EQ(task.arguments.size(), 124u);
}

TEST_F(ScriptRunnerTest, TheClickedWindowIsItsExactPath)
{
    for (char const* script : { "/a/x.sh", "/a/x.scpt" })
        EXPECT_EQ(started(script, {}, FileURL("/a \xFF/b\n", true)).environment.at("MW_CLICKWIN"), "/a \xFF/b\n");
}

TEST_F(ScriptRunnerTest, AnInheritedClickedWindowIsNotHandedOnWhereThereIsNone)
{
    desktop.tasks.ownEnvironment = { { "MW_CLICKWIN", "/of another run" } };
    for (char const* script : { "/a/x.sh", "/a/x.scpt" })
        EXPECT_FALSE(started(script).environment.contains("MW_CLICKWIN"));
    EXPECT_EQ(started("/a/x.sh", {}, FileURL("/own")).environment.at("MW_CLICKWIN"), "/own");
}

TEST_F(ScriptRunnerTest, ItsValuesReplaceInheritedOnesAndTheOthersAreHandedOn)
{
    desktop.tasks.ownEnvironment
        = { { "HOME", "/home/\xFF" }, { "EMPTY", "" }, { "MW_NARGS", "99" }, { "MW_CLICKWIN", "/old" } };
    EXPECT_EQ(started("/a/x.sh", twoFiles, FileURL("/new")).environment,
        (TaskEnvironment {
            { "HOME", "/home/\xFF" }, { "EMPTY", "" }, { "MW_NARGS", "2" }, { "MW_CLICKWIN", "/new" } }));
}

TEST_F(ScriptRunnerTest, AnyOtherExtensionStartsNothingAndIsNotLogged)
{
    desktop.tasks.failure = Error { ErrorKind::other, "nothing starts" };
    for (char const* path : { "/a/x.SH", "/a/x.Scpt", "/a/x.bash", "/a/x", "/a/sh", "/a/.sh", "/a/x.sh.txt", "" })
        ScriptRunner::run(FileURL(path), twoFiles, FileURL("/window"));
    EXPECT_TRUE(desktop.tasks.launched.empty());
    EXPECT_TRUE(desktop.log.lines().empty());
}

TEST_F(ScriptRunnerTest, AFailureToStartIsOneLineInTheLog)
{
    desktop.tasks.failure = Error { ErrorKind::other, "Argument list too long." };
    ScriptRunner::run(FileURL("/a/x\xFF.sh"), twoFiles, std::nullopt);
    ScriptRunner::run(FileURL("/a/x.scpt"), {}, std::nullopt);
    EXPECT_EQ(desktop.log.lines(),
        (Words { "Marrowick: failed to run /a/x\xFF.sh: Argument list too long.",
            "Marrowick: failed to run /a/x.scpt: Argument list too long." }));
    EXPECT_TRUE(desktop.alerts.errors.empty());
}

TEST_F(ScriptRunnerTest, AScriptThatStartsIsNotLogged)
{
    started("/a/x.sh");
    EXPECT_TRUE(desktop.log.lines().empty());
}

}
}
