// Which files are taken for requests, and that each is taken once.

#include "Support/FinderSyncTest.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

using Names = std::vector<std::string>;

constexpr std::size_t largestRequest = std::size_t { 64 } * 1024 * 1024;

class FinderSyncRequestsTest : public FinderSyncTest {
protected:
    FinderSyncRequestsTest() { publish({ destination }); }

    static void process() { bridge().processPendingRequests(); }
    /// A request that makes a copy of "a", so that "Dest" counts how often it was carried out.
    std::string copyText() const { return requestText("copy", destination.path(), { (folder / "a").path() }); }
    std::size_t timesCarriedOut() const { return folder.names("Dest").size(); }
    void socket(std::string const& name) const
    {
        auto const url = folder / name;
        sockaddr_un address {};
        address.sun_family = AF_UNIX;
        EXPECT_LT(url.path().size(), sizeof address.sun_path);
        url.path().copy(address.sun_path, sizeof address.sun_path - 1);
        int const descriptor = ::socket(AF_UNIX, SOCK_STREAM, 0);
        EXPECT_EQ(::bind(descriptor, reinterpret_cast<sockaddr const*>(&address), sizeof address), 0);
        ::close(descriptor);
    }
    static ResourceValues regularFile()
    {
        ResourceValues values;
        values.isRegularFile = true;
        return values;
    }
    FileURL const destination = folder.folder("Dest");
    FileURL const item = folder.file("a");
    FileURL const requestsURL = folder / requests;
    FileURL request(std::string const& name) const { return requestsURL.appendingPathComponent(name); }
};

TEST_F(FinderSyncRequestsTest, OnlyTheExactExtensionMakesARequest)
{
    Names const others { "b.txt", "c.JSON", "d.Json", "e.json.tmp", "f.jsonx", "g.xjson", "json", ".json", "h.json.",
        "i.json~", "j.json ", "kjson" };
    for (auto const& name : others)
        drop(name, copyText());
    drop("req.json", copyText());
    process();
    auto sorted = others;
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(waiting(), sorted);
    EXPECT_EQ(timesCarriedOut(), 1u);
    EXPECT_EQ(desktop.fileContents.timesUsed(request("req.json")), 1);
    EXPECT_EQ(desktop.fileContents.timesUsed(request("e.json.tmp")), 0);
}

TEST_F(FinderSyncRequestsTest, TheRestOfTheNameHasNoMeaning)
{
    Names const names { "a.json", "b.txt.json", ".hidden.json", " .json", "\xff.json", "\n.json", "%n.json" };
    for (auto const& name : names)
        drop(name, copyText());
    folder.file(std::string(requests) + "/.hidden", "a.json\n");
    process();
    EXPECT_EQ(waiting(), (Names { ".hidden" }));
    EXPECT_EQ(timesCarriedOut(), names.size());
}

TEST_F(FinderSyncRequestsTest, WhatIsNoRegularFileStaysAndIsNotOpened)
{
    auto const real = folder.file("real.json", copyText());
    auto const in = std::string(requests) + "/";
    folder.folder(in + "folder.json");
    folder.link(in + "link.json", real.path());
    folder.link(in + "dangling.json", "nowhere");
    folder.link(in + "loop.json", "loop.json");
    folder.fifo(in + "fifo.json");
    socket(in + "socket.json");
    folder.file(std::string(requests) + "/folder.json/inner.json", copyText());
    process();
    EXPECT_EQ(
        waiting(), (Names { "dangling.json", "fifo.json", "folder.json", "link.json", "loop.json", "socket.json" }));
    EXPECT_EQ(folder.content("real.json"), copyText());
    EXPECT_TRUE(desktop.fileContents.used.empty());
    EXPECT_EQ(timesCarriedOut(), 0u);
}

TEST_F(FinderSyncRequestsTest, AnEntryOfUnknownKindStays)
{
    auto const file = drop("request.json", copyText());
    desktop.fileManager.listings[requestsURL] = { { file, {} } };
    process();
    EXPECT_EQ(waiting(), (Names { "request.json" }));
    EXPECT_EQ(timesCarriedOut(), 0u);
}

TEST_F(FinderSyncRequestsTest, WhatTakesTheFilesPlaceAfterTheListingStays)
{
    auto const real = folder.file("real.json", copyText());
    auto const link = folder.link(std::string(requests) + "/link.json", real.path());
    auto const fifo = folder.fifo(std::string(requests) + "/fifo.json");
    auto const inner = folder.folder(std::string(requests) + "/folder.json");
    desktop.fileManager.listings[requestsURL]
        = { { link, regularFile() }, { fifo, regularFile() }, { inner, regularFile() } };
    process();
    EXPECT_EQ(waiting(), (Names { "fifo.json", "folder.json", "link.json" }));
    EXPECT_EQ(timesCarriedOut(), 0u);
}

TEST_F(FinderSyncRequestsTest, AFileThatIsGoneAfterTheListingIsNothing)
{
    auto const gone = request("gone.json");
    auto const file = drop("request.json", copyText());
    desktop.fileManager.listings[requestsURL] = { { gone, regularFile() }, { file, regularFile() } };
    process();
    EXPECT_EQ(timesCarriedOut(), 1u);
}

TEST_F(FinderSyncRequestsTest, AFolderThatCannotBeListedGivesNothing)
{
    drop("request.json", copyText());
    desktop.fileManager.unreadable = { requestsURL };
    process();
    EXPECT_EQ(waiting(), (Names { "request.json" }));
    desktop.fileManager.unreadable.clear();
    folder.remove(requests);
    process();
    EXPECT_EQ(timesCarriedOut(), 0u);
    EXPECT_TRUE(desktop.log.lines().empty());
}

TEST_F(FinderSyncRequestsTest, HiddenEntriesAreAskedForAndNothingIsSorted)
{
    auto const items = std::vector { folder.file("1"), folder.file("2"), folder.file("3") };
    auto& listing = desktop.fileManager.listings[requestsURL];
    for (auto const& [name, index] : { std::pair { "z.json", 2 }, { "a.json", 0 }, { "m.json", 1 } })
        listing.push_back(
            { drop(name, requestText("move", destination.path(), { items.at(std::size_t(index)).path() })),
                regularFile() });
    process();
    EXPECT_EQ(desktop.fileManager.hiddenAskedFor.front(), HiddenItems::included);
    auto const move = [&](std::string const& name) {
        return "move " + (folder / name).path() + " to " + destination.appendingPathComponent(name).path();
    };
    EXPECT_EQ(desktop.calls, (CallRecord { move("3"), move("1"), move("2") }));
}

TEST_F(FinderSyncRequestsTest, WhatCannotBeReadIsDeletedAndIgnored)
{
    desktop.fileContents.inaccessible = { drop("request.json", copyText()) };
    process();
    EXPECT_TRUE(waiting().empty());
    EXPECT_EQ(timesCarriedOut(), 0u);
    EXPECT_TRUE(desktop.log.lines().empty());
}

TEST_F(FinderSyncRequestsTest, WhatIsNoRequestIsDeletedAndIgnored)
{
    auto const dest = quoted(destination.path());
    auto const source = quoted(item.path());
    Names const texts {
        "",
        "not JSON",
        "[]",
        "null",
        "{}",
        R"({"op":"copy","dest":)" + dest + "}",
        R"({"op":"copy","sources":[)" + source + "]}",
        R"({"dest":)" + dest + R"(,"sources":[)" + source + "]}",
        R"({"op":1,"dest":)" + dest + R"(,"sources":[)" + source + "]}",
        R"({"op":"copy","dest":)" + dest + R"(,"sources":)" + source + "}",
        R"({"op":"copy","dest":)" + dest + R"(,"sources":[)" + source + ",1]}",
        "\xEF\xBB\xBF" + copyText(),
        copyText() + "x",
        copyText().substr(0, copyText().size() - 1),
        requestText("copy", destination.path(), { item.path(), "\xff" }),
        requestText("copy", destination.path(), { item.path(), "\\ud800" }),
        R"({"x":)" + std::string(100'000, '[') + std::string(100'000, ']') + "," + copyText().substr(1),
    };
    for (std::size_t index = 0; index < texts.size(); ++index)
        drop(std::to_string(index) + ".json", texts[index]);
    process();
    EXPECT_TRUE(waiting().empty());
    EXPECT_EQ(timesCarriedOut(), 0u);
    EXPECT_TRUE(desktop.log.lines().empty());
}

TEST_F(FinderSyncRequestsTest, OtherKeysAreAcceptedAndOfRepeatedOnesTheLastCounts)
{
    drop("a.json", R"({"version":2,)" + copyText().substr(1));
    drop("b.json", R"({"op":"move","dest":"/nowhere",)" + copyText().substr(1));
    process();
    EXPECT_EQ(timesCarriedOut(), 2u);
    EXPECT_TRUE(platform().fileManager->fileExists(item));
}

TEST_F(FinderSyncRequestsTest, AFileOfTheLargestSizeIsTakenAndALargerOneIsDeleted)
{
    auto text = copyText();
    text.resize(largestRequest, ' ');
    drop("request.json", text);
    process();
    EXPECT_EQ(timesCarriedOut(), 1u);
    drop("request.json", text + ' ');
    process();
    EXPECT_TRUE(waiting().empty());
    EXPECT_EQ(timesCarriedOut(), 1u);
}

TEST_F(FinderSyncRequestsTest, ARequestIsDeletedBeforeItIsCarriedOut)
{
    drop("request.json", requestText("ask", destination.path(), { item.path() }));
    desktop.alerts.answers = { 0 };
    desktop.alerts.whileUp = [&] { EXPECT_TRUE(waiting().empty()); };
    process();
    EXPECT_EQ(timesCarriedOut(), 1u);
}

TEST_F(FinderSyncRequestsTest, ARequestThatCannotBeDeletedIsCarriedOutOnce)
{
    auto const file = drop("request.json", copyText());
    desktop.fileManager.irremovable = { file };
    for (int pass = 0; pass < 3; ++pass)
        process();
    EXPECT_EQ(timesCarriedOut(), 1u);
    EXPECT_EQ(waiting(), (Names { "request.json" }));
    // Under another name it is the same request.
    std::filesystem::rename(file.path(), request("other.json").path());
    process();
    EXPECT_EQ(timesCarriedOut(), 1u);
    // Others are carried out all the same.
    drop("third.json", copyText());
    process();
    EXPECT_EQ(timesCarriedOut(), 2u);
    EXPECT_EQ(waiting(), (Names { "other.json" }));
}

TEST_F(FinderSyncRequestsTest, ARequestAfterOneThatCouldNotBeDeletedIsCarriedOutOnceThatIsGone)
{
    auto const file = drop("request.json", copyText());
    desktop.fileManager.irremovable = { file };
    process();
    folder.remove(std::string(requests) + "/request.json");
    process();
    // It may well get the number of the one before.
    drop("request.json", copyText());
    process();
    process();
    EXPECT_EQ(timesCarriedOut(), 2u);
}

TEST_F(FinderSyncRequestsTest, TenThousandRequestsAreConsumedOnceEach)
{
    constexpr int count = 10'000;
    for (int number = 0; number < count; ++number)
        drop(std::to_string(number) + ".json", requestText("move", "/unknown/" + std::to_string(number), {}));
    process();
    EXPECT_TRUE(waiting().empty());
    auto const lines = desktop.log.lines();
    EXPECT_EQ(lines.size(), std::size_t { count });
    EXPECT_EQ((std::set<std::string>(lines.begin(), lines.end()).size()), std::size_t { count });
    process();
    EXPECT_EQ(desktop.log.lines().size(), std::size_t { count });
}

TEST_F(FinderSyncRequestsTest, RequestsThatArriveDuringAnAlertAreHandledAfterIt)
{
    bridge().start();
    drop("first.json", requestText("ask", destination.path(), { item.path() }));
    desktop.alerts.answers = { 1, 2 };
    std::vector<std::size_t> doneWhenAsked;
    desktop.alerts.whileUp = [&] {
        doneWhenAsked.push_back(timesCarriedOut());
        if (doneWhenAsked.size() > 1)
            return;
        drop("second.json", requestText("ask", destination.path(), { item.path() }));
        desktop.dispatch.touch(requestsURL);
        desktop.dispatch.runMain();
        EXPECT_EQ(waiting(), (Names { "second.json" }));
        EXPECT_EQ(desktop.alerts.asked.size(), 1u);
    };
    desktop.dispatch.touch(requestsURL);
    EXPECT_EQ(waiting(), (Names { "second.json" }));
    EXPECT_EQ(folder.names("Dest"), (Names { "a" }));
    desktop.dispatch.runMain();
    EXPECT_TRUE(waiting().empty());
    EXPECT_EQ(folder.names("Dest"), (Names { "a", "a alias" }));
    EXPECT_EQ(doneWhenAsked, (std::vector<std::size_t> { 0, 1 }));
}

TEST_F(FinderSyncRequestsTest, OfTwoRequestsTheSecondWaitsForTheWholeOfTheFirst)
{
    auto& listing = desktop.fileManager.listings[requestsURL];
    for (std::string const name : { "1.json", "2.json" })
        listing.push_back({ drop(name, requestText("ask", destination.path(), { item.path() })), regularFile() });
    desktop.alerts.answers = { 1, 3 };
    int asked = 0;
    desktop.alerts.whileUp = [&] {
        EXPECT_EQ(waiting(), asked == 0 ? (Names { "2.json" }) : Names {});
        EXPECT_EQ(timesCarriedOut(), asked == 0 ? 0u : 1u);
        ++asked;
    };
    process();
    EXPECT_EQ(asked, 2);
}

TEST_F(FinderSyncRequestsTest, WhatNobodyCanBeAskedAboutAtTheEndWaitsForTheNextStart)
{
    auto& listing = desktop.fileManager.listings[requestsURL];
    for (std::string const name : { "1.json", "2.json", "3.json" })
        listing.push_back(
            { drop(name, name == "3.json" ? copyText() : requestText("ask", destination.path(), {})), regularFile() });
    desktop.alerts.answers = { 3 };
    desktop.alerts.whileUp = [&] { desktop.application.terminate(); };
    process();
    EXPECT_EQ(desktop.alerts.asked.size(), 1u);
    EXPECT_EQ(waiting(), (Names { "2.json", "3.json" }));
    EXPECT_EQ(timesCarriedOut(), 0u);
}

TEST_F(FinderSyncRequestsTest, APassWithoutRequestsReadsNothing)
{
    process();
    EXPECT_TRUE(desktop.fileContents.used.empty());
}

}
}
