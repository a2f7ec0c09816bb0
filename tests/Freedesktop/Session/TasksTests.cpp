#include "Actions/ScriptRunner.h"
#include "Fakes/FakeLog.h"
#include "Fakes/TemporaryFolder.h"
#include "Freedesktop/Session/FreedesktopTasks.h"
#include "Freedesktop/Session/SessionSupport.h"
#include "Platform/Platform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <filesystem>

namespace marrowick {

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::Optional;

class TasksTest : public testing::Test {
protected:
    std::string path(std::string const& name) { return folder_.url().path() + "/" + name; }

    Task recording(std::vector<std::string> arguments, TaskEnvironment environment = {})
    {
        return { FileURL(program_.path()), std::move(arguments), std::move(environment) };
    }

    std::string failure(Task const& task)
    {
        auto const outcome = tasks_.launch(task);
        return outcome ? "started" : outcome.error().message;
    }

    TemporaryFolder folder_;
    Recorder program_ { path("program") };
    FreedesktopTasks tasks_;
};

/// Replaces the environment for its own lifetime.
class EnvironmentScope {
public:
    explicit EnvironmentScope(std::vector<char const*> const& entries)
    {
        for (auto const* entry : entries)
            entries_.push_back(const_cast<char*>(entry));
        entries_.push_back(nullptr);
        environ = entries_.data();
    }
    ~EnvironmentScope() { environ = before_; }
    EnvironmentScope(EnvironmentScope const&) = delete;
    EnvironmentScope& operator=(EnvironmentScope const&) = delete;

private:
    std::vector<char*> entries_;
    char** before_ = environ;
};

}

TEST_F(TasksTest, ArgumentsArriveAsTheyAre)
{
    std::vector<std::string> const arguments { "", " ", "with space", "quote\"'`", "new\nline", "100% %f", "-rf", "--",
        "broken \xFF\xC3", "$(id);&|*", std::string(4000, 'x') };
    ASSERT_TRUE(tasks_.launch(recording(arguments)));
    EXPECT_THAT(program_.waitForStart(), Optional(ElementsAreArray(arguments)));
}

TEST_F(TasksTest, TheEnvironmentIsTheTasksAlone)
{
    ASSERT_TRUE(tasks_.launch(recording(
        {}, { { "MW_NARGS", "2" }, { "MW_CLICKWIN", "/srv/-a b\xFF\n%" }, { "EMPTY", "" }, { "ODD", "a=b=c" } })));
    ASSERT_TRUE(program_.waitForStart());
    EXPECT_THAT(program_.environment(),
        testing::UnorderedElementsAre("MW_NARGS=2", "MW_CLICKWIN=/srv/-a b\xFF\n%", "EMPTY=", "ODD=a=b=c"));

    ASSERT_TRUE(tasks_.launch(recording({})));
    ASSERT_TRUE(program_.waitForStart());
    EXPECT_THAT(program_.environment(), IsEmpty());
}

TEST_F(TasksTest, OurEnvironmentIsToldInExactBytes)
{
    EnvironmentScope const scope({ "A=1", "MALFORMED", "BYTES=\xFF\n=x", "EMPTY=", "A=2", "" });
    EXPECT_EQ(tasks_.environment(), (TaskEnvironment { { "A", "1" }, { "BYTES", "\xFF\n=x" }, { "EMPTY", "" } }));
}

TEST_F(TasksTest, NoEnvironmentAtAllIsAnEmptyOne)
{
    auto* const before = environ;
    environ = nullptr;
    auto const found = tasks_.environment();
    environ = before;
    EXPECT_THAT(found, IsEmpty());
}

TEST_F(TasksTest, WhatChangedSinceTheStartIsTold)
{
    setenv("MARROWICK_TEST", "fresh", 1);
    EXPECT_EQ(tasks_.environment()["MARROWICK_TEST"], "fresh");
    unsetenv("MARROWICK_TEST");
    EXPECT_FALSE(tasks_.environment().contains("MARROWICK_TEST"));
}

TEST_F(TasksTest, StandardStreamsAndTheWorkingDirectoryAreShared)
{
    auto const before = std::filesystem::current_path();
    std::filesystem::current_path(folder_.url().path());
    ASSERT_TRUE(tasks_.launch(recording({})));
    std::filesystem::current_path(before);
    ASSERT_TRUE(program_.waitForStart());
    EXPECT_EQ(program_.facts()["directory"], std::filesystem::canonical(folder_.url().path()));
    EXPECT_EQ(program_.facts()["input"], std::filesystem::read_symlink("/proc/self/fd/0"));
    EXPECT_EQ(program_.facts()["output"], std::filesystem::read_symlink("/proc/self/fd/1"));
    EXPECT_EQ(program_.facts()["error"], std::filesystem::read_symlink("/proc/self/fd/2"));
}

TEST_F(TasksTest, NoOtherDescriptorIsInheritedAndSignalsAreAsAtFirst)
{
    // One beyond any that is likely to be open.
    int const planted = fcntl(0, F_DUPFD, 200);
    ASSERT_GE(planted, 200);
    auto const pipe = signal(SIGPIPE, SIG_IGN);
    auto const child = signal(SIGUSR1, SIG_IGN);
    sigset_t blocked;
    sigset_t before;
    sigfillset(&blocked);
    pthread_sigmask(SIG_BLOCK, &blocked, &before);

    auto const outcome = tasks_.launch(recording({}));

    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    signal(SIGUSR1, child);
    signal(SIGPIPE, pipe);
    close(planted);
    ASSERT_TRUE(outcome);
    ASSERT_TRUE(program_.waitForStart());
    // The C library keeps two signals for itself.
    constexpr unsigned long long internalSignals = 0x180000000;
    EXPECT_EQ(program_.facts()["descriptors"], "0 1 2");
    EXPECT_EQ(std::stoull(program_.facts()["SigIgn"], nullptr, 16) & ~internalSignals, 0u);
    EXPECT_EQ(program_.facts()["SigBlk"], "0000000000000000");
}

TEST_F(TasksTest, ATerminalThatGoesDoesNotEndIt)
{
    ASSERT_TRUE(tasks_.launch(recording({})));
    ASSERT_TRUE(program_.waitForStart());
    EXPECT_EQ(program_.facts()["session"], program_.facts()["pid"]);
}

TEST_F(TasksTest, ScriptsLeaveNoZombies)
{
    std::vector<std::string> processes;
    for (int i = 0; i < 20; ++i) {
        ASSERT_TRUE(tasks_.launch(recording({})));
        ASSERT_TRUE(program_.waitForStart());
        processes.push_back("/proc/" + program_.facts()["pid"]);
    }
    for (auto const& process : processes)
        EXPECT_TRUE(waitFor([&] { return !std::filesystem::exists(process); })) << process;
}

TEST_F(TasksTest, AShellScriptRuns)
{
    auto const script = path("say it's \xFF.sh");
    writeFile(script, "printf '%s|%s|%s' \"$#\" \"$1\" \"$MW_NARGS\" >\"$2\"\n");
    ASSERT_TRUE(tasks_.launch({ FileURL("/bin/sh"), { script, "-n 'x'\n", path("out") }, { { "MW_NARGS", "1" } } }));
    ASSERT_TRUE(waitFor([&] { return std::filesystem::exists(path("out")) && folder_.content("out").ends_with('1'); }));
    EXPECT_EQ(folder_.content("out"), "2|-n 'x'\n|1");
}

TEST_F(TasksTest, TheErrorSaysWhyNothingStarted)
{
    writeFile(path("plain"), "text");
    writeFile(path("senseless"), "neither a script nor a program", 0755);
    writeFile(path("orphan"), "#!/nonexistent/interpreter\n", 0755);
    auto const start = [&](std::string const& program) { return failure({ FileURL(program), {}, {} }); };
    EXPECT_EQ(start(path("missing")), "Could not start \u201Cmissing\u201D: No such file or directory.");
    EXPECT_EQ(start(path("orphan")), "Could not start \u201Corphan\u201D: No such file or directory.");
    EXPECT_EQ(start(path("plain")), "Could not start \u201Cplain\u201D: Permission denied.");
    EXPECT_EQ(start(path("senseless")), "Could not start \u201Csenseless\u201D: Exec format error.");
    EXPECT_EQ(start("/"), "Could not start \u201C/\u201D: Permission denied.");
    // A name without a place is not looked for.
    EXPECT_EQ(start("sh"), "Could not start \u201Csh\u201D: No such file or directory.");
    EXPECT_EQ(start(""), "Could not start \u201C\u201D: No such file or directory.");
}

TEST_F(TasksTest, TooManyArgumentsAreAnError)
{
    std::vector<std::string> const arguments(100'000, std::string(100, 'x'));
    EXPECT_EQ(failure(recording(arguments)), "Could not start \u201Cprogram\u201D: Argument list too long.");
    EXPECT_EQ(failure(recording({ std::string(1'000'000, 'x') })),
        "Could not start \u201Cprogram\u201D: Argument list too long.");
    EXPECT_EQ(failure(recording({}, { { "BIG", std::string(1'000'000, 'x') } })),
        "Could not start \u201Cprogram\u201D: Argument list too long.");
    EXPECT_FALSE(program_.arguments());
}

TEST_F(TasksTest, AScriptWithTooManyItemsIsOneLineInTheLog)
{
    auto log = std::make_unique<FakeLog>();
    auto const& lines = *log;
    Platform services;
    services.log = std::move(log);
    services.tasks = std::make_unique<FreedesktopTasks>();
    PlatformScope const scope(std::move(services));
    std::vector<FileURL> const selection(100'000, FileURL("/" + std::string(100, 'x')));
    ScriptRunner::run(FileURL(path("a.sh")), selection, std::nullopt);
    EXPECT_THAT(lines.lines(),
        ElementsAre("Marrowick: failed to run " + path("a.sh") + ": Could not start “sh”: Argument list too long."));
}

TEST_F(TasksTest, ATextThatWouldBeCutIsAnError)
{
    std::string const cut("a\0b", 3);
    EXPECT_EQ(failure(recording({ cut })), "Could not start \u201Cprogram\u201D: Invalid argument.");
    EXPECT_EQ(failure(recording({}, { { "A", cut } })), "Could not start \u201Cprogram\u201D: Invalid argument.");
    EXPECT_EQ(failure(recording({}, { { cut, "A" } })), "Could not start \u201Cprogram\u201D: Invalid argument.");
}

}
