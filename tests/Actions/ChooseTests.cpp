#include "Actions/EntryKinds.h"
#include "Actions/MenuActionHandler.h"
#include "Fakes/TestPlatform.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

FileURL const url("/a/caf\xE9.txt");
FileURL const application("/apps/Editor.app");
std::vector<FileURL> const threeFiles { FileURL("/s/one"), FileURL("/s/two"), FileURL("/s/three") };

class ChooseTest : public PlatformTest {
protected:
    ChooseTest()
    {
        for (auto const& file : { url, FileURL("/a/x.SH"), FileURL("/a/x.sh"), FileURL("/a/x.scpt") })
            desktop.fileManager.values[file].isApplication = false;
        desktop.fileManager.values[application].isApplication = true;
    }

    void choose(MenuNodeKind kind, std::optional<FileURL> const& copyDestination = std::nullopt)
    {
        MenuActionHandler::choose(nodeOf(std::move(kind)), context, copyDestination);
    }
    void chooseFile(char const* path) { choose(MenuNodeKind::file(FileURL(path))); }
    /// The choice is made by an event with `flags`.
    void chooseFileWith(ModifierFlags flags, char const* path)
    {
        desktop.events.during(Event { EventType::leftMouseUp, flags }, [&] { chooseFile(path); });
    }
    void expectCalls(CallRecord const& calls) { EXPECT_EQ(std::exchange(desktop.calls, {}), calls); }

    MenuContext context;
};

TEST_F(ChooseTest, AFileOpens)
{
    choose(MenuNodeKind::file(url));
    EXPECT_EQ(desktop.workspace.opened, (std::vector { url }));
    EXPECT_EQ(desktop.workspace.opened.front().path(), "/a/caf\xE9.txt");
    expectCalls({ "open /a/caf\xE9.txt" });
}

TEST_F(ChooseTest, AFileThatIsNoApplicationOpensByItselfAlsoWhileFilesAreSelected)
{
    context.finderSelection = threeFiles;
    choose(MenuNodeKind::file(url));
    expectCalls({ "open /a/caf\xE9.txt" });
}

TEST_F(ChooseTest, AFolderOpensWhileNothingIsSelected)
{
    choose(MenuNodeKind::folder(url));
    expectCalls({ "open /a/caf\xE9.txt" });
}

TEST_F(ChooseTest, AFolderAsksWhatToDoWithTwoSelectedFilesAndOpensNothing)
{
    context.finderSelection = { FileURL("/s/one"), FileURL("/s/two") };
    desktop.alerts.answers = { 3 };
    choose(MenuNodeKind::folder(FileURL("/a/Docs")));
    ASSERT_EQ(desktop.alerts.asked.size(), 1u);
    EXPECT_EQ(desktop.alerts.asked[0].informativeText, "Put one, two into “Docs”.");
    expectCalls({ "ask Move, copy, or alias?" });
}

TEST_F(ChooseTest, ATemplateFolderItselfDoesNothing)
{
    choose(MenuNodeKind::copyTemplateFolder(url));
    context.finderSelection = threeFiles;
    choose(MenuNodeKind::copyTemplateFolder(url));
    expectCalls({});
}

TEST_F(ChooseTest, AnEntryWithoutAFileDoesNothing)
{
    context.finderSelection = threeFiles;
    for (auto const& kind : kindsWithoutAFile()) {
        choose(kind);
        choose(kind, FileURL("/destination"));
    }
    expectCalls({});
}

TEST_F(ChooseTest, AnApplicationOpensTheThreeSelectedFilesInOneCall)
{
    context.finderSelection = threeFiles;
    choose(MenuNodeKind::file(application));
    EXPECT_EQ(desktop.workspace.openedWith, (std::vector<FakeWorkspace::OpenedWith> { { threeFiles, application } }));
    expectCalls({ "open /s/one /s/two /s/three with /apps/Editor.app" });
}

TEST_F(ChooseTest, AnApplicationIsLaunchedWhileNothingIsSelected)
{
    choose(MenuNodeKind::file(application));
    expectCalls({ "open /apps/Editor.app" });
}

TEST_F(ChooseTest, AFolderThatIsAnApplicationIsStillAFolder)
{
    context.finderSelection = threeFiles;
    desktop.alerts.answers = { 3 };
    choose(MenuNodeKind::folder(application));
    expectCalls({ "ask Move, copy, or alias?" });
}

TEST_F(ChooseTest, AScriptRunsWithTheSelectionAndTheFrontWindow)
{
    context.finderSelection = { FileURL("/s/one"), FileURL("/s/two") };
    context.copyDestinationFolder = FileURL("/front window");
    chooseFile("/a/x.sh");
    expectCalls({ "launch /bin/sh /a/x.sh /s/one /s/two" });
    EXPECT_EQ(desktop.tasks.launched[0].environment,
        (TaskEnvironment { { "MW_CLICKWIN", "/front window" }, { "MW_NARGS", "2" } }));
    chooseFile("/a/x.scpt");
    expectCalls({ "launch /usr/bin/osascript /a/x.scpt" });
    EXPECT_EQ(desktop.tasks.launched[1].environment, desktop.tasks.launched[0].environment);
}

TEST_F(ChooseTest, AScriptOutsideATemplateMenuKnowsNoWindowWhereThereIsNone)
{
    chooseFile("/a/x.sh");
    ASSERT_EQ(desktop.tasks.launched.size(), 1u);
    EXPECT_EQ(desktop.tasks.launched[0].environment, (TaskEnvironment { { "MW_NARGS", "0" } }));
}

TEST_F(ChooseTest, OnlyTheExactExtensionMakesAScript)
{
    for (char const* path : { "/a/x.SH", "/a/x.Sh", "/a/x.Scpt", "/a/x.SCPT", "/a/x.sh.txt", "/a/x.bash", "/a/sh",
             "/a/.sh", "/a/x.scpt2", "/a.sh/x" }) {
        chooseFile(path);
        chooseFileWith(modifier::option, path);
        expectCalls({ std::string("open ") + path, std::string("open ") + path });
    }
    EXPECT_TRUE(desktop.tasks.launched.empty());
}

TEST_F(ChooseTest, AnotherSpellingOfTheExtensionOpensAsADocumentWhileFilesAreSelected)
{
    context.finderSelection = threeFiles;
    chooseFile("/a/x.SH");
    expectCalls({ "open /a/x.SH" });
}

TEST_F(ChooseTest, WithOptionAShellScriptIsShownAndOpenedInTheTextEditor)
{
    chooseFileWith(modifier::option, "/a/x.sh");
    expectCalls({ "open /a", "select /a/x.sh", "open /a/x.sh with /System/Applications/TextEdit.app" });
    EXPECT_EQ(desktop.workspace.openedWith,
        (std::vector<FakeWorkspace::OpenedWith> {
            { { FileURL("/a/x.sh") }, FileURL("/System/Applications/TextEdit.app") } }));
}

TEST_F(ChooseTest, WithOptionACompiledScriptIsShownAndOpenedInItsDefaultApplication)
{
    chooseFileWith(modifier::option, "/a/x.scpt");
    expectCalls({ "open /a", "select /a/x.scpt", "open /a/x.scpt" });
}

TEST_F(ChooseTest, WithOptionTheSelectionDoesNotMatter)
{
    context.finderSelection = threeFiles;
    chooseFileWith(modifier::option, "/a/x.scpt");
    expectCalls({ "open /a", "select /a/x.scpt", "open /a/x.scpt" });
}

TEST_F(ChooseTest, OptionAmongOtherKeysCounts)
{
    chooseFileWith(modifier::option | modifier::shift | modifier::capsLock, "/a/x.scpt");
    expectCalls({ "open /a", "select /a/x.scpt", "open /a/x.scpt" });
}

TEST_F(ChooseTest, OtherKeysThanOptionRunTheScript)
{
    chooseFileWith(modifier::command | modifier::control | modifier::shift | modifier::capsLock, "/a/x.sh");
    chooseFileWith({}, "/a/x.sh");
    expectCalls({ "launch /bin/sh /a/x.sh", "launch /bin/sh /a/x.sh" });
}

TEST_F(ChooseTest, WithoutACurrentEventTheScriptRunsWhateverKeysAreHeld)
{
    desktop.events.held = modifier::option;
    chooseFile("/a/x.sh");
    expectCalls({ "launch /bin/sh /a/x.sh" });
}

TEST_F(ChooseTest, ScriptsOpenLikeDocumentsWhileRunningThemIsOff)
{
    desktop.defaults.set("runScriptFiles", false);
    for (char const* path : { "/a/x.sh", "/a/x.scpt" }) {
        chooseFile(path);
        chooseFileWith(modifier::option, path);
        expectCalls({ std::string("open ") + path, std::string("open ") + path });
    }
}

TEST_F(ChooseTest, AnExecutableScriptTakesTheSelectedFilesWhileRunningScriptsIsOff)
{
    desktop.defaults.set("runScriptFiles", false);
    desktop.fileManager.values[FileURL("/a/x.sh")].isApplication = true;
    context.finderSelection = { FileURL("/s/one") };
    chooseFile("/a/x.sh");
    expectCalls({ "open /s/one with /a/x.sh" });
}

TEST_F(ChooseTest, AScriptRunsEvenWhereTheDesktopTakesItForAnApplication)
{
    desktop.fileManager.values[FileURL("/a/x.sh")].isApplication = true;
    context.finderSelection = { FileURL("/s/one") };
    chooseFile("/a/x.sh");
    expectCalls({ "launch /bin/sh /a/x.sh /s/one" });
}

TEST_F(ChooseTest, AFolderNamedLikeAScriptIsAFolder)
{
    choose(MenuNodeKind::folder(FileURL("/a/x.sh")));
    expectCalls({ "open /a/x.sh" });
}

TEST_F(ChooseTest, OpensForEditingByTheExactExtension)
{
    MenuActionHandler::openForEditing(FileURL("/a/x.sh"));
    MenuActionHandler::openForEditing(FileURL("/a/x.SH"));
    MenuActionHandler::openForEditing(FileURL("/a/x.scpt"));
    MenuActionHandler::openForEditing(FileURL("/a/x"));
    expectCalls(
        { "open /a/x.sh with /System/Applications/TextEdit.app", "open /a/x.SH", "open /a/x.scpt", "open /a/x" });
}

}
}
