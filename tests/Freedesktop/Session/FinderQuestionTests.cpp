#include "Freedesktop/Session/FinderQuestionTest.h"

#include "Support/FinderBridge.h"

#include <QTimer>

#include <sys/types.h>

#include <csignal>
#include <thread>

namespace marrowick {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char timedOut[] = "{ NSAppleScriptErrorMessage = \"Finder got an error: AppleEvent timed out.\"; "
                            "NSAppleScriptErrorNumber = \"-1712\"; }";

std::string failed(std::string const& message)
{
    return "{ NSAppleScriptErrorMessage = \"Finder got an error: " + message
        + "\"; NSAppleScriptErrorNumber = \"-10000\"; }";
}

constexpr char firstName[] = "org.marrowick.FileManager.First";
constexpr char secondName[] = "org.marrowick.FileManager.Second";

/// The process that is the session's bus; 0 where it cannot be told.
pid_t busProcess()
{
    GObjectOwner<GDBusConnection> const connection(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    GVariantOwner const answer(
        g_dbus_connection_call_sync(connection.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus",
            "org.freedesktop.DBus", "GetConnectionUnixProcessID", g_variant_new("(s)", "org.freedesktop.DBus"),
            G_VARIANT_TYPE("(u)"), G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
    guint32 pid = 0;
    if (answer)
        g_variant_get(answer.get(), "(u)", &pid);
    return static_cast<pid_t>(pid);
}

using NoBusFinderQuestionTest = FinderQuestionTest;

}

TEST_F(FinderQuestionTest, WithoutAFileManagerNothingIsSelectedAndNothingFails)
{
    EXPECT_THAT(selection(), IsEmpty());
    EXPECT_EQ(target(), "");
}

TEST_F(FinderQuestionTest, WithoutAFileManagerAQuestionIsQuick)
{
    constexpr int questions = 200;
    auto const begin = std::chrono::steady_clock::now();
    for (int i = 0; i < questions; ++i)
        selection();
    EXPECT_LT((std::chrono::steady_clock::now() - begin) / questions, std::chrono::milliseconds(10));
}

TEST_F(FinderQuestionTest, SelectionAndFolderAreThoseOfTheWindowInTheirOrder)
{
    FileManagerProcess manager;
    manager.tell({ { 0, "file:///srv/a%20b", { "file:///srv/z", "file:///srv/%FF", "file:///srv/a" } } });
    EXPECT_THAT(selection(), ElementsAre("file:///srv/z", "file:///srv/%FF", "file:///srv/a"));
    EXPECT_EQ(target(), "file:///srv/a%20b");
}

TEST_F(FinderQuestionTest, SelectionBelongsToTheFrontWindowAlone)
{
    FileManagerProcess manager;
    manager.tell({ { 0, "file:///a", { "file:///a/x" } }, { 0, "file:///b", {}, true } });
    EXPECT_THAT(selection(), IsEmpty());
    EXPECT_EQ(target(), "file:///b");
}

TEST_F(FinderQuestionTest, EachQuestionAsksAnew)
{
    FileManagerProcess manager;
    manager.tell({ { 0, "file:///a", { "file:///a/x" } } });
    EXPECT_THAT(selection(), ElementsAre("file:///a/x"));
    manager.tell({ { 0, "file:///b", {} } });
    EXPECT_EQ(target(), "file:///b");
    EXPECT_THAT(selection(), IsEmpty());
    EXPECT_EQ(manager.count(), 3);
}

TEST_F(FinderQuestionTest, WhatIsNotOnTheDiskIsLeftOut)
{
    FileManagerProcess manager;
    manager.tell({ { 0, "trash:///",
        { "trash:///a", "file:///b", "sftp://host/c", "", "computer:", "file:///d", "/plain", "FILE" } } });
    EXPECT_THAT(selection(), ElementsAre("file:///b", "file:///d"));
    EXPECT_EQ(target(), "");
}

TEST_F(FinderQuestionTest, LocationsThatArePathsOfNothingAreSkippedByTheProgram)
{
    FileManagerProcess manager;
    manager.tell({ { 0, "file://otherhost/srv",
        { "file:relative", "file:", "file://", "file://otherhost/x", "file:///nul%00x", "file:///cut%2", "file:///%zz",
            "file:///ok%FF%0A%25" } } });
    std::vector<std::string> paths;
    auto const answer = askForSelection();
    for (auto const& item : std::get<EventDescriptor::List>(std::get<EventDescriptor>(answer).value)) {
        if (auto const url = FinderBridge::fileURLValue(item))
            paths.push_back(url->path());
    }
    EXPECT_THAT(paths, ElementsAre("/ok\xFF\n%"));
    EXPECT_FALSE(FinderBridge::fileURLValue(std::get<EventDescriptor>(askForTarget())));
}

TEST_F(FinderQuestionTest, ManyWindowsAndManySelectedFilesAreAnswered)
{
    FileManagerProcess manager;
    std::vector<ToldWindow> windows(2000, { 0xFFFF'FFFF'FFFF, "file:///other", {} });
    for (std::size_t i = 0; i < windows.size(); ++i)
        windows[i].id += i;
    windows[1500] = { 7, "file:///many", std::vector<std::string>(10'000, "file:///many/file"), true };
    manager.tell(windows);
    ASSERT_TRUE(waitFor([&] { return selection().size() == 10'000; }));
    EXPECT_EQ(target(), "file:///many");
}

TEST_F(FinderQuestionTest, AnErrorIsTheScriptsErrorEachTime)
{
    FileManagerProcess manager;
    manager.perform("fail It is \"tired\".");
    EXPECT_THAT(selection(), ElementsAre(failed("It is \\\"tired\\\".")));
    EXPECT_EQ(target(), failed("It is \\\"tired\\\"."));
    EXPECT_EQ(manager.count(), 2);
}

TEST_F(FinderQuestionTest, ALongErrorIsCutAtACharacter)
{
    FileManagerProcess manager;
    std::string text = "x";
    for (int i = 0; i < 1000; ++i)
        text += "ä";
    manager.perform("fail " + text);
    EXPECT_EQ(target(), failed(text.substr(0, 499) + "…"));
}

TEST_F(FinderQuestionTest, AnAnswerOfAnotherTypeIsAnError)
{
    FileManagerProcess manager;
    for (auto const* const value : { "()", "(@a(usassb) [],)", "('text',)", "(@a(tsassb) [], 1)", "(@av [<1>],)" }) {
        ASSERT_EQ(manager.perform("answer " + std::string(value)), "ok");
        EXPECT_EQ(target(), failed("its state is not of the type (a(tsassb)).")) << value;
    }
}

TEST_F(FinderQuestionTest, WindowsOfOneManagerCountThoughAnotherFails)
{
    FileManagerProcess first({ firstName });
    FileManagerProcess second({ secondName });
    first.perform("fail No");
    second.tell({ { 0, "file:///b", {} } });
    EXPECT_EQ(target(), "file:///b");
    second.tell({});
    EXPECT_EQ(target(), failed("No"));
}

TEST_F(FinderQuestionTest, AllManagersAreAskedAtOnce)
{
    // One after the other they would need more than the time there is, so that the last would never be heard.
    FileManagerProcess first({ firstName });
    FileManagerProcess second({ secondName });
    first.tell({ { 0, "file:///a", {} } });
    second.tell({ { 0, "file:///b", {}, true } });
    first.perform("delay 160");
    second.perform("delay 160");
    EXPECT_TRUE(waitFor([&] { return target() == "file:///b"; }));
}

TEST_F(FinderQuestionTest, AProcessWithTwoNamesIsAskedOnce)
{
    FileManagerProcess manager({ firstName, secondName });
    manager.tell({ { 0, "file:///a", {} } });
    EXPECT_EQ(target(), "file:///a");
    EXPECT_EQ(manager.count(), 1);
}

TEST_F(FinderQuestionTest, OtherNamesAreNotAsked)
{
    FileManagerProcess other({ "org.marrowick.FileManagers.Test", "org.marrowick.FileManager" });
    other.tell({ { 0, "file:///a", {} } });
    EXPECT_EQ(target(), "");
    EXPECT_EQ(other.count(), 0);
}

TEST_F(FinderQuestionTest, AManagerThatIsNotInTimeFailsOnceAndThenCountsAsAbsent)
{
    FileManagerProcess manager;
    manager.perform("silent");
    auto const begin = std::chrono::steady_clock::now();
    EXPECT_THAT(selection(), ElementsAre(timedOut));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, FileManagerStates::patience);
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(target(), "");
        EXPECT_THAT(selection(), IsEmpty());
    }
    EXPECT_EQ(manager.count(), 1);
}

TEST_F(FinderQuestionTest, AHealthyManagerIsHeardBesideOneThatHangs)
{
    FileManagerProcess hanging({ firstName });
    FileManagerProcess healthy({ secondName });
    hanging.perform("silent");
    healthy.tell({ { 0, "file:///b", { "file:///b/x" } } });
    for (int i = 0; i < 5; ++i)
        EXPECT_THAT(selection(), ElementsAre("file:///b/x"));
    EXPECT_EQ(hanging.count(), 1);
    EXPECT_EQ(healthy.count(), 5);
}

TEST_F(FinderQuestionTest, ALateAnswerMakesTheManagerBeAskedAgain)
{
    FileManagerProcess manager;
    manager.perform("silent");
    EXPECT_EQ(target(), timedOut);
    manager.tell({ { 0, "file:///a", {} } });
    EXPECT_EQ(target(), "");
    manager.perform("release");
    EXPECT_TRUE(waitFor([&] { return target() == "file:///a"; }));
    EXPECT_EQ(manager.count(), 2);
}

TEST_F(FinderQuestionTest, AnErrorThatComesLateIsAnAnswerToo)
{
    FileManagerProcess manager;
    manager.perform("silent");
    EXPECT_EQ(target(), timedOut);
    manager.perform("fail No");
    manager.perform("release");
    EXPECT_TRUE(waitFor([&] { return target() == failed("No"); }));
}

TEST_F(FinderQuestionTest, AStoppedProcessThatRunsAgainIsAskedAgain)
{
    FileManagerProcess manager;
    manager.tell({ { 0, "file:///a", {} } });
    manager.signal(SIGSTOP);
    EXPECT_EQ(target(), timedOut);
    EXPECT_EQ(target(), "");
    manager.signal(SIGCONT);
    EXPECT_TRUE(waitFor([&] { return target() == "file:///a"; }));
    EXPECT_EQ(manager.count(), 2);
}

TEST_F(FinderQuestionTest, ARestartedManagerIsAskedAtOnce)
{
    {
        FileManagerProcess manager;
        manager.perform("silent");
        EXPECT_EQ(target(), timedOut);
    }
    FileManagerProcess manager;
    manager.tell({ { 0, "file:///a", {} } });
    EXPECT_EQ(target(), "file:///a");
}

TEST_F(FinderQuestionTest, AManagerThatEndsWhileItIsAskedCountsAsAbsent)
{
    FileManagerProcess manager;
    manager.perform("silent");
    std::thread end([&] {
        while (manager.count() == 0) { }
        manager.perform("die");
    });
    EXPECT_EQ(target(), "");
    end.join();
}

TEST_F(FinderQuestionTest, ABusThatHangsIsWaitedForOnce)
{
    FileManagerProcess manager;
    manager.tell({ { 0, "file:///a", {} } });
    ASSERT_EQ(target(), "file:///a");
    auto const bus = busProcess();
    ASSERT_GT(bus, 0);
    kill(bus, SIGSTOP);
    std::vector<std::string> targets { target() };
    auto const begin = std::chrono::steady_clock::now();
    for (int i = 0; i < 20; ++i)
        targets.push_back(target());
    auto const spent = std::chrono::steady_clock::now() - begin;
    kill(bus, SIGCONT);
    EXPECT_THAT(targets, testing::Each(""));
    EXPECT_LT(spent, 20 * FileManagerStates::patience / 2);
    EXPECT_TRUE(waitFor([&] { return target() == "file:///a"; }));
}

TEST_F(FinderQuestionTest, ALostQuestionIsRepeatedInTheBackground)
{
    FileManagerStates states(std::chrono::milliseconds(0));
    auto const isAnswered = [](auto const& answer) {
        auto const* const windows = std::get_if<FileManagerWindows>(&answer);
        return windows && windows->size() == 1;
    };
    FileManagerProcess manager;
    manager.perform("silent");
    EXPECT_TRUE(std::holds_alternative<ScriptFailure>(states.ask()));
    // What was kept is never answered.
    manager.tell({ { 0, "file:///a", {} } });
    EXPECT_FALSE(isAnswered(states.ask()));
    EXPECT_TRUE(waitFor([&] { return isAnswered(states.ask()); }));
}

TEST_F(FinderQuestionTest, BackgroundQuestionsAreRare)
{
    FileManagerStates states(std::chrono::hours(1));
    FileManagerProcess manager;
    manager.perform("silent");
    EXPECT_TRUE(std::holds_alternative<ScriptFailure>(states.ask()));
    for (int i = 0; i < 20; ++i)
        EXPECT_TRUE(std::holds_alternative<FileManagerWindows>(states.ask()));
    EXPECT_EQ(manager.count(), 1);
}

TEST_F(FinderQuestionTest, NothingElseHappensWhileItWaits)
{
    FileManagerProcess manager;
    manager.perform("silent");
    int deliveries = 0;
    QTimer::singleShot(0, [&] { ++deliveries; });
    auto const deliver = [](void* count) -> gboolean {
        ++*static_cast<int*>(count);
        return G_SOURCE_REMOVE;
    };
    g_idle_add_full(G_PRIORITY_HIGH, deliver, &deliveries, nullptr);
    EXPECT_EQ(target(), timedOut);
    EXPECT_EQ(deliveries, 0);
    EXPECT_TRUE(waitFor([&] { return deliveries == 2; }));
}

TEST_F(FinderQuestionTest, EndsWhileAnAnswerIsStillToCome)
{
    FileManagerProcess manager;
    manager.perform("silent");
    EXPECT_EQ(target(), timedOut);
    bridge_.reset();
    manager.perform("release");
    bridge_ = std::make_unique<FreedesktopScriptingBridge>(connection_);
    EXPECT_EQ(target(), "");
    EXPECT_EQ(manager.count(), 2);
}

TEST_F(NoBusFinderQuestionTest, NothingIsSelectedAndNothingFails)
{
    EXPECT_THAT(selection(), IsEmpty());
    EXPECT_EQ(target(), "");
}

}
