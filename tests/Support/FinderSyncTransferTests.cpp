// How a request is carried out, and what the user hears of it.

#include "Support/FinderSyncTest.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace marrowick {
namespace {

using Names = std::vector<std::string>;
using testing::StartsWith;

class FinderSyncTransferTest : public FinderSyncTest {
protected:
    static constexpr auto ignoring = "Marrowick: ignoring request for unknown destination ";

    FinderSyncTransferTest()
    {
        folder.folder("x");
        publish({ destination });
    }

    static void process() { bridge().processPendingRequests(); }
    void carryOut(std::string const& op, std::vector<FileURL> const& sources)
    {
        drop(op, destination, sources);
        process();
    }
    void carryOut(std::string const& op, std::string const& dest, std::vector<std::string> const& sources)
    {
        drop("request.json", requestText(op, dest, sources));
        process();
    }
    Names inDestination() const { return folder.names("Dest"); }
    /// The transfers of these items fail.
    void fail(Names const& names)
    {
        desktop.fileTransfer.instead = [names](std::string const& call) -> std::optional<Result<void>> {
            for (auto const& name : names) {
                if (call.find("/" + name + " to ") != std::string::npos)
                    return Result<void>(Error { ErrorKind::other, "No room for " + name + "." });
            }
            return std::nullopt;
        };
    }
    std::vector<FileURL> files(Names const& names) const
    {
        std::vector<FileURL> urls;
        for (auto const& name : names)
            urls.push_back(folder.file("x/" + name, name));
        return urls;
    }

    FileURL const destination = folder.folder("Dest");
};

TEST_F(FinderSyncTransferTest, EveryOperationDoesWhatItSays)
{
    auto const items = files({ "m.txt", "c.txt", "a.txt" });
    carryOut("move", { items[0] });
    carryOut("copy", { items[1] });
    carryOut("alias", { items[2] });
    EXPECT_EQ(inDestination(), (Names { "a alias.txt", "c.txt", "m.txt" }));
    EXPECT_EQ(folder.names("x"), (Names { "a.txt", "c.txt" }));
    EXPECT_EQ(folder.content("Dest/m.txt"), "m.txt");
    EXPECT_EQ(folder.content("Dest/c.txt"), "c.txt");
    EXPECT_EQ(folder.linkTarget("Dest/a alias.txt"), items[2].path());
    EXPECT_TRUE(desktop.alerts.asked.empty());
    EXPECT_EQ(desktop.application.activations, 0);
    EXPECT_TRUE(desktop.log.lines().empty());
}

TEST_F(FinderSyncTransferTest, ATakenNameIsNumbered)
{
    folder.file("Dest/a", "old");
    carryOut("move", files({ "a" }));
    EXPECT_EQ(inDestination(), (Names { "a", "a 2" }));
    EXPECT_EQ(folder.content("Dest/a"), "old");
}

TEST_F(FinderSyncTransferTest, ItemsAreHandledInTheOrderOfTheRequest)
{
    carryOut("copy", files({ "b", "c", "a" }));
    auto const copy = [&](std::string const& name) {
        return "copy " + (folder / ("x/" + name)).path() + " to " + (folder / ("Dest/" + name)).path();
    };
    EXPECT_EQ(desktop.calls, (CallRecord { copy("b"), copy("c"), copy("a") }));
}

TEST_F(FinderSyncTransferTest, AnOtherOperationDoesNothingAndIsNotEvenJudged)
{
    auto const items = files({ "a" });
    for (auto const* const op : { "Move", "COPY", "", "link", "trash", "ask ", "move\\u0000" }) {
        drop(op, destination, items);
        process();
        carryOut(op, "/unknown", { items[0].path() });
    }
    EXPECT_TRUE(waiting().empty());
    EXPECT_TRUE(inDestination().empty());
    EXPECT_TRUE(desktop.log.lines().empty());
    EXPECT_EQ(desktop.fileContents.timesUsed(folder / snapshotFile), 0);
}

TEST_F(FinderSyncTransferTest, WithoutAReadableSnapshotTheRequestIsDroppedInSilence)
{
    auto const items = files({ "a" });
    desktop.fileContents.inaccessible = { folder / snapshotFile };
    carryOut("move", items);
    desktop.fileContents.inaccessible.clear();
    folder.remove(snapshotFile);
    carryOut("move", items);
    folder.folder(snapshotFile);
    carryOut("move", items);
    folder.remove(snapshotFile);
    folder.fifo(snapshotFile);
    carryOut("move", items);
    EXPECT_TRUE(waiting().empty());
    EXPECT_TRUE(inDestination().empty());
    EXPECT_TRUE(desktop.log.lines().empty());
}

TEST_F(FinderSyncTransferTest, WithAnUndecodableSnapshotEveryDestinationIsUnknown)
{
    auto const items = files({ "a" });
    auto const root = R"([{"name":"Dest","path":")" + destination.path() + R"(","children":[]}])";
    Names const contents {
        "",
        "{}",
        R"({"generated":"2026-11-16T00:44:41.678Z","roots":)" + root + "}",
        R"({"generated":"2026-11-16T00:44:41","roots":)" + root + "}",
        R"({"generated":"2026-11-31T00:44:41Z","roots":)" + root + "}",
        R"({"generated":"2026-11-16T00:44:41Z","roots":)" + root + "} x",
        R"({"generated":"2026-11-16T00:44:41Z","roots":[{"name":"Dest","path":")" + destination.path() + R"("}]})",
    };
    for (auto const& content : contents) {
        folder.file(snapshotFile, content);
        carryOut("move", items);
    }
    EXPECT_EQ(desktop.log.lines(), Names(contents.size(), ignoring + destination.path()));
    EXPECT_TRUE(inDestination().empty());
    // The same with a proper date.
    folder.file(snapshotFile, R"({"generated":"2026-11-16T00:44:41Z","roots":)" + root + "}");
    carryOut("move", items);
    EXPECT_EQ(inDestination(), (Names { "a" }));
}

TEST_F(FinderSyncTransferTest, ADestinationIsKnownByItsExactBytesOnly)
{
    auto const item = files({ "a" }).front().path();
    auto const path = destination.path();
    Names const others { path + "/", "/" + path, path + "/.", path + "/../Dest", (folder / "dest").path(),
        (folder / "DEST").path(), (folder / "x").path(), folder.url().path(), "Dest", "" };
    Names lines;
    for (auto const& other : others) {
        carryOut("move", other, { item });
        lines.push_back(ignoring + other);
    }
    EXPECT_EQ(desktop.log.lines(), lines);
    EXPECT_TRUE(waiting().empty());
    EXPECT_TRUE(inDestination().empty());
}

TEST_F(FinderSyncTransferTest, ACompositionOfLettersIsAnotherDestination)
{
    auto const composed = folder.folder("\u00e9");
    auto const decomposed = folder.folder("e\u0301");
    publish({ composed });
    carryOut("move", decomposed.path(), {});
    EXPECT_EQ(desktop.log.lines(), (Names { ignoring + decomposed.path() }));
    carryOut("move", composed.path(), {});
    EXPECT_EQ(desktop.log.lines().size(), 1u);
}

TEST_F(FinderSyncTransferTest, AnUnknownDestinationIsOneLineOfTheLog)
{
    carryOut("ask", R"(/a\nb\r\u0000\u001b\u007f %n %s %@ \\x é)", {});
    EXPECT_EQ(desktop.log.lines(), (Names { ignoring + std::string(R"(/a\x0Ab\x0D\x00\x1B\x7F %n %s %@ \x é)") }));
}

TEST_F(FinderSyncTransferTest, ADestinationAtAnyDepthIsKnown)
{
    auto const deep = folder.folder("Dest/1/2/3");
    folder.link(std::string(items) + "/Alias", destination.path());
    bridge().refreshSnapshot();
    desktop.dispatch.runBackground();
    carryOut("move", deep.path(), { files({ "a" }).front().path() });
    EXPECT_EQ(folder.names("Dest/1/2/3"), (Names { "a" }));
    carryOut("move", folder.folder("Dest/1/2/3/4").path(), {});
    EXPECT_EQ(desktop.log.lines().size(), 1u);
}

TEST_F(FinderSyncTransferTest, EveryRequestIsJudgedByTheSnapshotOfItsMoment)
{
    auto const other = folder.folder("Other");
    auto const item = files({ "a" }).front().path();
    desktop.alerts.answers = { 3, 3 };
    desktop.alerts.whileUp = [&] { publish({ other }); };
    carryOut("ask", destination.path(), { item });
    carryOut("ask", destination.path(), { item });
    EXPECT_EQ(desktop.log.lines(), (Names { ignoring + destination.path() }));
    carryOut("ask", other.path(), { item });
    EXPECT_EQ(desktop.alerts.asked.size(), 2u);
}

TEST_F(FinderSyncTransferTest, ASourceThatDoesNotExistIsSkipped)
{
    auto const item = files({ "a" }).front();
    folder.link("x/dangling", "nowhere");
    auto const relative = std::filesystem::relative(item.path()).string();
    ASSERT_TRUE(std::filesystem::exists(relative));
    carryOut("move", destination.path(),
        { (folder / "gone").path(), "", ".", relative, item.path() + "\\u0000", "\\u0000", item.path() + "\\u0000b",
            (folder / "x/dangling").path(), item.path() + "/a", "file://" + item.path(), "~/a" });
    EXPECT_TRUE(desktop.calls.empty());
    EXPECT_TRUE(inDestination().empty());
    EXPECT_EQ(folder.names("x"), (Names { "a", "dangling" }));
}

TEST_F(FinderSyncTransferTest, AnItemThatIsNamedTwiceIsMovedOnce)
{
    auto const item = files({ "a" }).front();
    carryOut("move", { item, item });
    EXPECT_EQ(inDestination(), (Names { "a" }));
    EXPECT_EQ(desktop.calls.size(), 1u);
}

TEST_F(FinderSyncTransferTest, IntoItsOwnFolderAnItemIsOnlyCopied)
{
    publish({ folder / "x" });
    auto const item = files({ "a" }).front();
    auto const own = (folder / "x").path();
    for (auto const* const op : { "move", "alias" })
        carryOut(op, own, { item.path(), own + "/./a", own + "/../x/a" });
    EXPECT_TRUE(desktop.calls.empty());
    EXPECT_EQ(folder.names("x"), (Names { "a" }));
    carryOut("copy", own, { item.path() });
    EXPECT_EQ(folder.names("x"), (Names { "a", "a 2" }));
}

TEST_F(FinderSyncTransferTest, AFolderDoesNotGoInsideItself)
{
    auto const inner = folder.folder("x/F/G");
    publish({ inner });
    desktop.alerts.answers = { 0, 0, 0 };
    for (auto const* const op : { "move", "copy", "alias" })
        carryOut(op, inner.path(), { (folder / "x/F").path() });
    EXPECT_TRUE(folder.names("x/F/G").empty());
    ASSERT_EQ(desktop.alerts.asked.size(), 3u);
    EXPECT_EQ(desktop.alerts.asked[0].messageText, "Marrowick couldn't move everything");
    EXPECT_EQ(desktop.alerts.asked[1].messageText, "Marrowick couldn't copy everything");
    EXPECT_EQ(desktop.alerts.asked[2].messageText, "Marrowick couldn't alias everything");
    for (auto const& alert : desktop.alerts.asked)
        EXPECT_EQ(alert.informativeText, "Can't put “F” inside itself.");
}

TEST_F(FinderSyncTransferTest, AFolderExactlyIntoItselfEndsInTheErrorOfTheDisk)
{
    auto const itself = folder.folder("x/F");
    folder.file("x/F/in");
    publish({ itself });
    desktop.alerts.answers = { 0, 0 };
    for (auto const* const op : { "move", "copy" })
        carryOut(op, itself.path(), { itself.path() });
    EXPECT_EQ(folder.names("x/F"), (Names { "in" }));
    ASSERT_EQ(desktop.alerts.asked.size(), 2u);
    for (auto const& alert : desktop.alerts.asked) {
        EXPECT_THAT(alert.informativeText, StartsWith("“F”: "));
        EXPECT_EQ(alert.informativeText.find("Can't put"), std::string::npos);
    }
}

TEST_F(FinderSyncTransferTest, FailuresStandInOneReportInTheOrderOfTheItems)
{
    auto const items = files({ "a", "b", "c", "d", "e" });
    fail({ "d", "b" });
    desktop.alerts.answers = { 0 };
    desktop.alerts.whileUp = [&] {
        EXPECT_EQ(desktop.application.activations, 1);
        EXPECT_EQ(inDestination(), (Names { "a", "c", "e" }));
    };
    carryOut("move", items);
    ASSERT_EQ(desktop.alerts.asked.size(), 1u);
    auto const& alert = desktop.alerts.asked.front();
    EXPECT_EQ(alert.messageText, "Marrowick couldn't move everything");
    EXPECT_EQ(alert.informativeText, "“b”: No room for b.\n“d”: No room for d.");
    EXPECT_EQ(alert.style, AlertStyle::warning);
    EXPECT_TRUE(alert.buttons.empty());
    EXPECT_TRUE(desktop.alerts.errors.empty());
}

TEST_F(FinderSyncTransferTest, RefusalsAndFailuresAndSkippedItemsStandInTheOrderOfTheItems)
{
    folder.folder("x/F/Dest");
    publish({ folder / "x/F/Dest" });
    auto const items = files({ "a", "b" });
    fail({ "a" });
    desktop.alerts.answers = { 0 };
    carryOut("copy", (folder / "x/F/Dest").path(),
        { items[0].path(), (folder / "gone").path(), (folder / "x/F").path(), items[1].path() });
    ASSERT_EQ(desktop.alerts.asked.size(), 1u);
    EXPECT_EQ(desktop.alerts.asked.front().informativeText, "“a”: No room for a.\nCan't put “F” inside itself.");
    EXPECT_EQ(folder.names("x/F/Dest"), (Names { "b" }));
}

TEST_F(FinderSyncTransferTest, AKnownDestinationThatBecameAFileIsReported)
{
    auto const items = files({ "a" });
    desktop.alerts.answers = { 0, 0, 0, 0, 0, 0, 0, 0, 0 };
    auto const tryAll = [&] {
        for (auto const* const op : { "move", "copy", "alias" })
            carryOut(op, items);
    };
    folder.remove("Dest");
    tryAll();
    EXPECT_EQ(folder.names(""), (Names { "support", "x" }));
    folder.file("Dest", "a file");
    tryAll();
    EXPECT_EQ(folder.content("Dest"), "a file");
    folder.remove("Dest");
    folder.link("Dest", "nowhere");
    tryAll();
    EXPECT_EQ(folder.linkTarget("Dest"), "nowhere");
    ASSERT_EQ(desktop.alerts.asked.size(), 9u);
    for (auto const& alert : desktop.alerts.asked)
        EXPECT_THAT(alert.informativeText, StartsWith("“a”: "));
    EXPECT_EQ(folder.names("x"), (Names { "a" }));
    EXPECT_EQ(folder.content("x/a"), "a");
}

TEST_F(FinderSyncTransferTest, AKnownDestinationThatNoDiskCanHoldIsReported)
{
    auto const items = files({ "a" });
    desktop.alerts.answers = { 0, 0, 0 };
    folder.file(snapshotFile,
        R"({"generated":"2026-11-16T00:44:41Z","roots":[{"name":"","path":")" + destination.path()
            + R"(\u0000x","children":[]}]})");
    for (auto const* const op : { "move", "copy", "alias" })
        carryOut(op, destination.path() + "\\u0000x", { items.front().path() });
    EXPECT_EQ(desktop.alerts.asked.size(), 3u);
    EXPECT_TRUE(inDestination().empty());
    EXPECT_EQ(folder.names("x"), (Names { "a" }));
}

TEST_F(FinderSyncTransferTest, TheQuestionNamesTheItemsAndTheDestination)
{
    desktop.alerts.answers = { 3, 3, 3 };
    carryOut("ask", files({ "a.txt" }));
    carryOut("ask", files({ "a", "b", "c" }));
    carryOut("ask", {});
    ASSERT_EQ(desktop.alerts.asked.size(), 3u);
    EXPECT_EQ(desktop.alerts.asked[0].informativeText, "“a.txt” → “Dest”");
    EXPECT_EQ(desktop.alerts.asked[1].informativeText, "3 items → “Dest”");
    EXPECT_EQ(desktop.alerts.asked[2].informativeText, "0 items → “Dest”");
    for (auto const& alert : desktop.alerts.asked) {
        EXPECT_EQ(alert.messageText, "What would you like to do?");
        EXPECT_EQ(alert.buttons, (Names { "Move Here", "Copy Here", "Alias Here", "Cancel" }));
    }
}

TEST_F(FinderSyncTransferTest, TheQuestionStandsInFrontBeforeAnythingIsDone)
{
    desktop.alerts.answers = { 0 };
    desktop.alerts.whileUp = [&] {
        EXPECT_EQ(desktop.application.activations, 1);
        EXPECT_EQ(desktop.calls.size(), 1u);
        EXPECT_TRUE(inDestination().empty());
    };
    carryOut("ask", files({ "a" }));
    EXPECT_EQ(inDestination(), (Names { "a" }));
}

TEST_F(FinderSyncTransferTest, TheAnswerChoosesTheOperation)
{
    auto const items = files({ "m", "c", "l", "n" });
    desktop.alerts.answers = { 0, 1, 2, 3 };
    for (auto const& item : items)
        carryOut("ask", { item });
    EXPECT_EQ(inDestination(), (Names { "c", "l alias", "m" }));
    EXPECT_EQ(folder.names("x"), (Names { "c", "l", "n" }));
    EXPECT_EQ(desktop.application.activations, 4);
}

TEST_F(FinderSyncTransferTest, NoItemsAreAskedAboutAndNothingIsTransferred)
{
    desktop.alerts.answers = { 0 };
    carryOut("ask", {});
    EXPECT_EQ(desktop.calls, (CallRecord { "ask What would you like to do?" }));
}

TEST_F(FinderSyncTransferTest, TheReportNamesTheOperationThatWasChosen)
{
    fail({ "a" });
    desktop.alerts.answers = { 1, 0 };
    carryOut("ask", files({ "a" }));
    ASSERT_EQ(desktop.alerts.asked.size(), 2u);
    EXPECT_EQ(desktop.alerts.asked[1].messageText, "Marrowick couldn't copy everything");
    EXPECT_EQ(desktop.application.activations, 2);
}

TEST_F(FinderSyncTransferTest, OwnFolderRulesFollowTheChosenOperation)
{
    publish({ folder / "x" });
    auto const item = files({ "a" }).front().path();
    desktop.alerts.answers = { 0, 2, 1 };
    for (int time = 0; time < 3; ++time)
        carryOut("ask", (folder / "x").path(), { item });
    EXPECT_EQ(folder.names("x"), (Names { "a", "a 2" }));
}

TEST_F(FinderSyncTransferTest, ThingsThatVanishWhileTheQuestionIsUpAreSkippedOrReported)
{
    auto const items = files({ "a", "b" });
    desktop.alerts.answers = { 0, 0 };
    desktop.alerts.whileUp = [&] {
        desktop.alerts.whileUp = {};
        folder.remove("x/a");
        folder.remove("Dest");
    };
    carryOut("ask", items);
    ASSERT_EQ(desktop.alerts.asked.size(), 2u);
    EXPECT_THAT(desktop.alerts.asked[1].informativeText, StartsWith("“b”: "));
    EXPECT_EQ(folder.names("x"), (Names { "b" }));
}

TEST_F(FinderSyncTransferTest, AReportHasNoMoreLinesThanAnybodyReads)
{
    std::vector<FileURL> const sources(20'000, FileURL("/"));
    drop("move", destination, sources);
    desktop.alerts.answers = { 0 };
    process();
    ASSERT_EQ(desktop.alerts.asked.size(), 1u);
    auto const& text = desktop.alerts.asked.front().informativeText;
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 9'999);
    EXPECT_TRUE(text.ends_with("\n…"));
}

}
}
