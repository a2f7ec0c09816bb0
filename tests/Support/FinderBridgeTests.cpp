#include "Fakes/TestPlatform.h"
#include "Support/FinderBridge.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

using List = EventDescriptor::List;
using FileReference = EventDescriptor::FileReference;

class FinderBridgeTest : public PlatformTest {
protected:
    void answer(std::string_view text, FakeFinder::Answer answer)
    {
        desktop.finder.answers[std::string(text)] = std::move(answer);
    }
    std::vector<FileURL> selectionAfter(EventDescriptor descriptor)
    {
        answer(FakeFinder::selectionText, std::move(descriptor));
        return FinderBridge::selectedItems();
    }
};

EventDescriptor const nothing {};
EventDescriptor const first { FileReference { "file:///a/first" } };
EventDescriptor const second { FileReference { "file:///a/second%20one" } };

TEST_F(FinderBridgeTest, AScriptsResultIsReturned)
{
    answer("a script", first);
    EXPECT_EQ(FinderBridge::runAppleScript("a script"), first);
    answer("a script", nothing);
    EXPECT_EQ(FinderBridge::runAppleScript("a script"), nothing);
    EXPECT_TRUE(desktop.log.lines().empty());
}

TEST_F(FinderBridgeTest, AScriptThatFailsIsLoggedInOneLine)
{
    answer("a script", ScriptFailure { "{ number = -1728; }" });
    EXPECT_EQ(FinderBridge::runAppleScript("a script"), std::nullopt);
    EXPECT_EQ(desktop.log.lines(), (std::vector<std::string> { "Marrowick: AppleScript error: { number = -1728; }" }));
}

TEST_F(FinderBridgeTest, ATextThatIsNoScriptIsNotLogged)
{
    answer("a script", ScriptFailure {});
    EXPECT_EQ(FinderBridge::runAppleScript("a script"), std::nullopt);
    EXPECT_TRUE(desktop.log.lines().empty());
}

TEST_F(FinderBridgeTest, TheSelectionIsAskedForByItsText)
{
    static_cast<void>(FinderBridge::selectedItems());
    EXPECT_EQ(desktop.finder.questions,
        (std::vector<std::string> { "tell application \"Finder\" to get (selection as alias list)" }));
}

TEST_F(FinderBridgeTest, AnEmptySelectionIsEmptyAndSilent)
{
    EXPECT_TRUE(selectionAfter({ List {} }).empty());
    EXPECT_TRUE(selectionAfter(nothing).empty());
    EXPECT_TRUE(desktop.log.lines().empty());
}

TEST_F(FinderBridgeTest, TheSelectionKeepsTheFileManagersOrder)
{
    EXPECT_EQ(
        selectionAfter({ List { second, first } }), (std::vector { FileURL("/a/second one"), FileURL("/a/first") }));
}

TEST_F(FinderBridgeTest, ASingleAliasIsASelectionOfOne)
{
    EXPECT_EQ(selectionAfter(first), (std::vector { FileURL("/a/first") }));
    EXPECT_EQ(selectionAfter({ std::string("/a/path") }), (std::vector { FileURL("/a/path") }));
}

TEST_F(FinderBridgeTest, AnItemThatIsNoFileIsSkippedAndTheOthersKeepTheirOrder)
{
    EventDescriptor const elsewhere { FileReference { "http://example.org/" } };
    EventDescriptor const path { std::string("/a/path") };
    EXPECT_EQ(selectionAfter({ List { second, nothing, elsewhere, path, first } }),
        (std::vector { FileURL("/a/second one"), FileURL("/a/path"), FileURL("/a/first") }));
    EXPECT_TRUE(desktop.log.lines().empty());
}

TEST_F(FinderBridgeTest, AListInsideAListIsSkipped)
{
    EXPECT_EQ(selectionAfter({ List { { List { first } }, second } }), (std::vector { FileURL("/a/second one") }));
}

TEST_F(FinderBridgeTest, AFailedQuestionForTheSelectionIsEmptyAndLogged)
{
    answer(FakeFinder::selectionText, ScriptFailure { "not running" });
    EXPECT_TRUE(FinderBridge::selectedItems().empty());
    EXPECT_EQ(desktop.log.lines(), (std::vector<std::string> { "Marrowick: AppleScript error: not running" }));
}

TEST_F(FinderBridgeTest, NamesThatAreNoTextKeepTheirBytes)
{
    desktop.finder.selection = { FileURL("/a/\xFF\xC3( %") };
    EXPECT_EQ(FinderBridge::selectedItems(), desktop.finder.selection);
}

TEST_F(FinderBridgeTest, TheFrontWindowIsAskedForByItsText)
{
    desktop.finder.frontWindow = FileURL("/a folder");
    EXPECT_EQ(FinderBridge::frontWindowFolder(), FileURL("/a folder"));
    EXPECT_EQ(desktop.finder.questions,
        (std::vector<std::string> { "tell application \"Finder\" to get (target of front window as alias)" }));
}

TEST_F(FinderBridgeTest, WithoutAWindowThereIsNoFolder)
{
    EXPECT_EQ(FinderBridge::frontWindowFolder(), std::nullopt);
    answer(FakeFinder::frontWindowText, nothing);
    EXPECT_EQ(FinderBridge::frontWindowFolder(), std::nullopt);
    answer(FakeFinder::frontWindowText, ScriptFailure { "no window" });
    EXPECT_EQ(FinderBridge::frontWindowFolder(), std::nullopt);
}

TEST_F(FinderBridgeTest, AFileValueIsAReferenceOrAPath)
{
    EXPECT_EQ(FinderBridge::fileURLValue(second), FileURL("/a/second one"));
    EXPECT_EQ(FinderBridge::fileURLValue({ std::string("/a%20b") }), FileURL("/a%20b"));
    EXPECT_EQ(FinderBridge::fileURLValue(nothing), std::nullopt);
    EXPECT_EQ(FinderBridge::fileURLValue({ List { first } }), std::nullopt);
    EXPECT_EQ(FinderBridge::fileURLValue({ FileReference { "no url" } }), std::nullopt);
}

struct InformationRow {
    char const* path;
    char const* quoted;
};

TEST_F(FinderBridgeTest, TheInformationWindowIsAskedForByThePathWithBackslashesAndThenQuotesEscaped)
{
    for (auto const& [path, quoted] : {
             InformationRow { "/a/plain file", "/a/plain file" },
             InformationRow { "/a/\"quoted\"", "/a/\\\"quoted\\\"" },
             InformationRow { "/a/back\\slash", "/a/back\\\\slash" },
             InformationRow { "/a/\\\"", "/a/\\\\\\\"" },
             InformationRow { "/a/\\\\", "/a/\\\\\\\\" },
             InformationRow { "/a/\xFF\n'%s", "/a/\xFF\n'%s" },
         }) {
        desktop.finder.questions.clear();
        FinderBridge::openInformationWindow(FileURL(path));
        EXPECT_EQ(desktop.finder.questions,
            (std::vector<std::string> {
                std::string("tell application \"Finder\" to open information window of (POSIX file \"") + quoted
                + "\" as alias)" }));
        EXPECT_EQ(desktop.finder.informationWindows.back(), FileURL(path));
    }
    EXPECT_TRUE(desktop.log.lines().empty());
}

TEST_F(FinderBridgeTest, AnInformationWindowThatCannotOpenIsOneLineInTheLog)
{
    answer("tell application \"Finder\" to open information window of (POSIX file \"/a\" as alias)",
        ScriptFailure { "refused" });
    FinderBridge::openInformationWindow(FileURL("/a"));
    EXPECT_EQ(desktop.log.lines(), (std::vector<std::string> { "Marrowick: AppleScript error: refused" }));
}

TEST_F(FinderBridgeTest, TrashingTellsLaterWhetherItSucceeded)
{
    std::vector<bool> told;
    for (auto const* path : { "/a/one", "/a/two" })
        FinderBridge::moveToTrash(FileURL(path), [&](bool succeeded) { told.push_back(succeeded); });
    EXPECT_EQ(desktop.workspace.recycled,
        (std::vector<std::vector<FileURL>> { { FileURL("/a/one") }, { FileURL("/a/two") } }));
    EXPECT_TRUE(told.empty());
    desktop.workspace.finishRecycling(std::nullopt);
    EXPECT_EQ(told, (std::vector<bool> { true }));
    desktop.workspace.finishRecycling(Error { ErrorKind::other, "no trash" });
    EXPECT_EQ(told, (std::vector<bool> { true, false }));
    EXPECT_TRUE(desktop.log.lines().empty());
}

TEST_F(FinderBridgeTest, TrashingNeedsNobodyToTell)
{
    FinderBridge::moveToTrash(FileURL("/a"));
    desktop.workspace.finishRecycling(Error { ErrorKind::other, "no trash" });
    FinderBridge::moveToTrash(FileURL("/a"), {});
    desktop.workspace.finishRecycling(std::nullopt);
    EXPECT_TRUE(desktop.log.lines().empty());
    EXPECT_TRUE(desktop.alerts.errors.empty());
}

TEST_F(FinderBridgeTest, VolumesAreSortedByTheirNamesWithNumbersByValue)
{
    desktop.fileManager.volumes = { FileURL("/media/u/Volume 10"), FileURL("/mnt/volume 9"), FileURL("/") };
    EXPECT_EQ(FinderBridge::mountedVolumes(),
        (std::vector { FileURL("/"), FileURL("/mnt/volume 9"), FileURL("/media/u/Volume 10") }));
}

TEST_F(FinderBridgeTest, VolumesOfOneNameKeepTheirOrder)
{
    desktop.fileManager.volumes = { FileURL("/z/Data"), FileURL("/b/data"), FileURL("/a/DATA") };
    EXPECT_EQ(FinderBridge::mountedVolumes(), *desktop.fileManager.volumes);
}

TEST_F(FinderBridgeTest, VolumesThatCannotBeToldAreNone)
{
    EXPECT_TRUE(FinderBridge::mountedVolumes().empty());
    EXPECT_TRUE(desktop.log.lines().empty());
}

}
}
