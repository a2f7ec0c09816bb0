#include "Fakes/TemporaryFolder.h"
#include "Freedesktop/Session/FreedesktopScriptingBridge.h"
#include "Freedesktop/Session/FreedesktopWorkspace.h"
#include "Freedesktop/Session/SessionSupport.h"
#include "Freedesktop/Session/TestFileManager.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace marrowick {

namespace {

using testing::ElementsAre;
using testing::MatchesRegex;
using testing::Optional;

constexpr char startupIDPattern[] = "marrowick-.*_TIME[1-9][0-9]*";

class FileManagerTest : public testing::Test {
protected:
    FileManagerTest() { handlers().folder.forget(); }
    ~FileManagerTest() override
    {
        std::filesystem::remove(servicePath_);
        if (!environmentVariable("DBUS_SESSION_BUS_ADDRESS").empty())
            callBus("ReloadConfig", nullptr);
    }

    /// Lets the bus start the session's file manager by `command`.
    void makeStartable(std::string const& command)
    {
        writeFile(servicePath_, "[D-BUS Service]\nName=org.freedesktop.FileManager1\nExec=" + command + "\n");
        callBus("ReloadConfig", nullptr);
    }

    std::string path(std::string const& name) const { return folder_.url().path() + "/" + name; }

    TemporaryFolder folder_;
    FreedesktopWorkspace workspace_ { std::make_shared<XConnection>(), std::make_shared<DeliveryGate>(),
        "org.marrowick.Marrowick" };
    FreedesktopScriptingBridge bridge_ { std::make_shared<XConnection>() };

private:
    std::string servicePath_ = environmentVariable("HOME") + "/services/org.freedesktop.FileManager1.service";
};

std::string informationWindowScript(std::string const& path)
{
    return "tell application \"Finder\" to open information window of (POSIX file \"" + path + "\" as alias)";
}

constexpr char selectionScript[] = "tell application \"Finder\" to get (selection as alias list)";
constexpr char frontWindowScript[] = "tell application \"Finder\" to get (target of front window as alias)";

using NoBusFileManagerTest = FileManagerTest;

}

TEST_F(FileManagerTest, RevealsEachFileByACallOfItsOwn)
{
    TestFileManager manager;
    std::string const longName(255, 'x');
    workspace_.activateFileViewerSelecting(
        { FileURL("/srv/-a b%\xFF\n\"'"), FileURL("/srv/dir/", true), FileURL(), FileURL("/srv/" + longName) });
    ASSERT_TRUE(waitFor([&] { return manager.calls().size() == 3; }));
    auto const calls = manager.calls();
    EXPECT_EQ(calls[0].method, "ShowItems");
    EXPECT_THAT(calls[0].uris, ElementsAre("file:///srv/-a%20b%25%FF%0A%22'"));
    EXPECT_THAT(calls[0].startupID, MatchesRegex(startupIDPattern));
    EXPECT_THAT(calls[1].uris, ElementsAre("file:///srv/dir"));
    EXPECT_THAT(calls[2].uris, ElementsAre("file:///srv/" + longName));
    EXPECT_FALSE(handlers().folder.arguments());
}

TEST_F(FileManagerTest, WithoutAFileManagerOnTheBusTheFoldersAreOpenedOnce)
{
    std::filesystem::create_directory(path("sub"));
    workspace_.activateFileViewerSelecting({ FileURL(path("a")), FileURL(path("b")) });
    EXPECT_THAT(handlers().folder.waitForStart(), Optional(ElementsAre(folder_.url().path())));
    workspace_.activateFileViewerSelecting({ FileURL(path("sub/c")) });
    EXPECT_THAT(handlers().folder.waitForStart(), Optional(ElementsAre(path("sub"))));
}

TEST_F(FileManagerTest, AFileManagerThatRefusesIsReplacedByTheFolder)
{
    TestFileManager manager(TestFileManager::Behaviour::refuses);
    workspace_.activateFileViewerSelecting({ FileURL(path("a")) });
    EXPECT_THAT(handlers().folder.waitForStart(), Optional(ElementsAre(folder_.url().path())));
    EXPECT_EQ(manager.calls().size(), 1u);
}

TEST_F(FileManagerTest, AFileManagerThatHangsHoldsNothingUp)
{
    TestFileManager manager(TestFileManager::Behaviour::keepsSilent);
    auto const start = std::chrono::steady_clock::now();
    workspace_.activateFileViewerSelecting({ FileURL(path("a")) });
    bridge_.execute(informationWindowScript("/srv"));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
    EXPECT_TRUE(waitFor([&] { return manager.calls().size() == 2; }));
}

TEST_F(FileManagerTest, AFileManagerThatCanBeStartedIs)
{
    auto const record = path("record");
    makeStartable(std::filesystem::read_symlink("/proc/self/exe").string() + " --file-manager " + record);
    workspace_.activateFileViewerSelecting({ FileURL("/srv/a b") });
    ASSERT_TRUE(waitFor([&] { return std::filesystem::exists(record) && std::filesystem::file_size(record) > 0; }));
    std::string uri;
    std::getline(std::ifstream(record), uri);
    EXPECT_EQ(uri, "file:///srv/a%20b");
    EXPECT_FALSE(handlers().folder.arguments());
}

TEST_F(FileManagerTest, AFileManagerThatFailsToStartIsReplacedByTheFolder)
{
    makeStartable("/bin/false");
    workspace_.activateFileViewerSelecting({ FileURL(path("a")) });
    EXPECT_THAT(handlers().folder.waitForStart(), Optional(ElementsAre(folder_.url().path())));
}

TEST_F(FileManagerTest, AnAnswerThatComesAfterTheEndOfTheWorkspaceDoesNothing)
{
    {
        FreedesktopWorkspace shortLived(
            std::make_shared<XConnection>(), std::make_shared<DeliveryGate>(), "org.marrowick.Marrowick");
        shortLived.activateFileViewerSelecting({ FileURL(path("gone/a")) });
    }
    // What is asked afterwards is answered afterwards.
    workspace_.activateFileViewerSelecting({ FileURL(path("kept/a")) });
    EXPECT_THAT(handlers().folder.waitForStart(), Optional(ElementsAre(path("kept"))));
}

TEST_F(FileManagerTest, TheInformationWindowScriptShowsTheProperties)
{
    TestFileManager manager;
    auto const answer = bridge_.execute(informationWindowScript("/srv/\\\"quoted\\\" \\\\ \xFF"));
    EXPECT_TRUE(std::holds_alternative<EventDescriptor>(answer));
    ASSERT_TRUE(waitFor([&] { return !manager.calls().empty(); }));
    auto const call = manager.calls().front();
    EXPECT_EQ(call.method, "ShowItemProperties");
    EXPECT_THAT(call.uris, ElementsAre("file:///srv/%22quoted%22%20%5C%20%FF"));
    EXPECT_THAT(call.startupID, MatchesRegex(startupIDPattern));
}

TEST_F(FileManagerTest, NothingIsSelectedAndNoWindowIsInFront)
{
    EXPECT_EQ(
        std::get<EventDescriptor>(bridge_.execute(selectionScript)), (EventDescriptor { EventDescriptor::List {} }));
    EXPECT_EQ(std::get<EventDescriptor>(bridge_.execute(frontWindowScript)), EventDescriptor {});
}

TEST_F(FileManagerTest, AnotherScriptIsAnError)
{
    auto const answer = bridge_.execute("tell application \"Finder\" to empty trash");
    auto const* const failure = std::get_if<ScriptFailure>(&answer);
    ASSERT_TRUE(failure);
    EXPECT_THAT(failure->errorDescription,
        Optional(std::string("{ NSAppleScriptErrorMessage = \"Finder got an error: the script is not understood.\"; "
                             "NSAppleScriptErrorNumber = \"-1708\"; }")));
}

TEST_F(NoBusFileManagerTest, WithoutABusTheFolderIsOpened)
{
    if (SessionBus::isAvailable()) {
        // The same rule where the bus is only out of sight of this process.
        auto const address = environmentVariable("DBUS_SESSION_BUS_ADDRESS");
        unsetenv("DBUS_SESSION_BUS_ADDRESS");
        workspace_.activateFileViewerSelecting({ FileURL(path("a")) });
        setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1);
    } else {
        workspace_.activateFileViewerSelecting({ FileURL(path("a")) });
    }
    EXPECT_THAT(handlers().folder.waitForStart(), Optional(ElementsAre(folder_.url().path())));
}

TEST_F(NoBusFileManagerTest, WithoutABusTheInformationWindowIsAnError)
{
    auto const address = environmentVariable("DBUS_SESSION_BUS_ADDRESS");
    unsetenv("DBUS_SESSION_BUS_ADDRESS");
    auto const answer = bridge_.execute(informationWindowScript("/srv"));
    if (!address.empty())
        setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1);
    auto const* const failure = std::get_if<ScriptFailure>(&answer);
    ASSERT_TRUE(failure);
    EXPECT_THAT(failure->errorDescription, Optional(testing::HasSubstr("no session bus")));
}

TEST_F(FileManagerTest, ABusThatIsGoneIsReplacedByTheFolder)
{
    auto const address = environmentVariable("DBUS_SESSION_BUS_ADDRESS");
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus", 1);
    workspace_.activateFileViewerSelecting({ FileURL(path("a")) });
    EXPECT_THAT(handlers().folder.waitForStart(), Optional(ElementsAre(folder_.url().path())));
    setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1);
}

}
