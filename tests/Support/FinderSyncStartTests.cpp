#include "Support/FinderSyncTest.h"

#include <filesystem>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

using Names = std::vector<std::string>;
using URLs = std::vector<FileURL>;

class FinderSyncStartTest : public FinderSyncTest {
protected:
    FileURL const itemsURL = folder / items;
    FileURL const requestsURL = folder / requests;

    void tick() { desktop.dispatch.fireTimers(refreshInterval); }
    /// Whether a snapshot was on its way since the last one; publishes it.
    bool isRefreshed()
    {
        folder.remove(snapshotFile);
        desktop.dispatch.runBackground();
        return platform().fileManager->fileExists(folder / snapshotFile);
    }
    /// Starts, and publishes the first snapshot.
    void start()
    {
        bridge().start();
        desktop.dispatch.runBackground();
    }
    void chooseItemsFolder(FileURL const& url) { desktop.defaults.values["itemsFolderPath"] = url.path(); }
};

TEST_F(FinderSyncStartTest, TheThreeLocationsAreBelowTheFirstSupportFolder)
{
    desktop.fileManager.standardDirectories[StandardDirectory::applicationSupport]
        = { folder / "support", folder / "another" };
    EXPECT_EQ(bridge().supportDir(), folder / "support/Marrowick");
    EXPECT_EQ(bridge().snapshotURL(), folder / "support/Marrowick/menu-snapshot.json");
    EXPECT_EQ(bridge().requestsDir(), folder / "support/Marrowick/Requests");
    EXPECT_TRUE(bridge().supportDir().hasDirectoryPath());
    EXPECT_TRUE(bridge().requestsDir().hasDirectoryPath());
    // They are kept for the life of the process.
    desktop.fileManager.standardDirectories[StandardDirectory::applicationSupport] = { folder / "another" };
    EXPECT_EQ(bridge().supportDir(), folder / "support/Marrowick");
}

TEST_F(FinderSyncStartTest, WithoutASupportFolderTheProcessStops)
{
    desktop.fileManager.standardDirectories[StandardDirectory::applicationSupport] = {};
    desktop.log.echoToStandardError();
    EXPECT_DEATH(bridge(), "no application support folder");
}

TEST_F(FinderSyncStartTest, NothingHappensBeforeTheStart)
{
    drop("copy", folder / "nowhere", {});
    static_cast<void>(bridge());
    EXPECT_TRUE(desktop.dispatch.watched().empty());
    EXPECT_EQ(desktop.dispatch.timerCount(), 0u);
    EXPECT_FALSE(isRefreshed());
    EXPECT_EQ(waiting(), (Names { "request.json" }));
}

TEST_F(FinderSyncStartTest, TheFoldersOfTheExchangeAreMade)
{
    folder.remove("support");
    start();
    EXPECT_EQ(folder.names("support/Marrowick"), (Names { "Requests", "menu-snapshot.json" }));
    EXPECT_EQ(desktop.dispatch.watched().front(), requestsURL);
}

TEST_F(FinderSyncStartTest, FoldersThatCannotBeMadeStopNothing)
{
    folder.remove("support");
    folder.file("support");
    auto const elsewhere = folder.folder("elsewhere");
    chooseItemsFolder(elsewhere);
    desktop.dispatch.unwatchable = { requestsURL };
    start();
    EXPECT_EQ(desktop.dispatch.watched(), (URLs { elsewhere }));
    EXPECT_EQ(desktop.dispatch.timerCount(), 1u);
    EXPECT_EQ(folder.content("support"), "");
}

TEST_F(FinderSyncStartTest, TheStartScansThenTakesRequestsThenWatches)
{
    auto const destination = folder.folder("Dest");
    folder.folder("a");
    publish({ destination });
    drop("ask", destination, { folder / "a" });
    desktop.alerts.answers = { 3 };
    int asked = 0;
    desktop.alerts.whileUp = [&] {
        ++asked;
        EXPECT_EQ(desktop.fileManager.listed, (URLs { itemsURL, requestsURL }));
        EXPECT_TRUE(desktop.dispatch.watched().empty());
        EXPECT_EQ(desktop.dispatch.timerCount(), 0u);
    };
    bridge().start();
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(desktop.dispatch.watched(), (URLs { requestsURL, itemsURL }));
    EXPECT_EQ(desktop.dispatch.timerCount(), 1u);
}

TEST_F(FinderSyncStartTest, RequestsLeftOverAreJudgedByTheSnapshotOnTheDisk)
{
    auto const destination = folder.folder("Dest");
    folder.file("a");
    publish({ destination });
    drop("move", destination, { folder / "a" });
    bridge().start();
    EXPECT_EQ(folder.names("Dest"), (Names { "a" }));
    EXPECT_TRUE(waiting().empty());
    desktop.dispatch.runBackground();
    EXPECT_EQ(publishedNames(), Names {});
}

TEST_F(FinderSyncStartTest, BeforeTheFirstSnapshotRequestsLeftOverAreDropped)
{
    auto const item = folder.file("a");
    auto const destination = folder.folder(std::string(items) + "/Dest");
    drop("move", destination, { item });
    bridge().start();
    EXPECT_TRUE(waiting().empty());
    EXPECT_TRUE(desktop.log.lines().empty());
    desktop.dispatch.runBackground();
    EXPECT_EQ(publishedNames(), (Names { "Dest" }));
    EXPECT_TRUE(folder.names(std::string(items) + "/Dest").empty());
    // The same request is carried out from then on.
    drop("move", destination, { item });
    desktop.dispatch.touch(requestsURL);
    EXPECT_EQ(folder.names(std::string(items) + "/Dest"), (Names { "a" }));
}

TEST_F(FinderSyncStartTest, WhatComesDuringAnAlertIsHandledAfterIt)
{
    start();
    auto const destination = folder.folder("Dest");
    publish({ destination });
    drop("ask", destination, {});
    desktop.alerts.answers = { 3 };
    desktop.alerts.whileUp = [&] {
        auto const listed = desktop.fileManager.listed.size();
        folder.remove(requests);
        folder.folder(requests);
        drop("request.json", "{}");
        desktop.dispatch.touch(requestsURL);
        desktop.dispatch.touch(itemsURL);
        tick();
        desktop.dispatch.runMain();
        EXPECT_EQ(desktop.fileManager.listed.size(), listed);
        EXPECT_EQ(waiting(), (Names { "request.json" }));
    };
    desktop.dispatch.touch(requestsURL);
    EXPECT_FALSE(isRefreshed());
    desktop.dispatch.runMain();
    EXPECT_TRUE(waiting().empty());
    EXPECT_TRUE(isRefreshed());
}

TEST_F(FinderSyncStartTest, RequestsThatArriveBeforeTheWatchAreTakenAtTheStart)
{
    auto const destination = folder.folder("Dest");
    folder.file("a");
    publish({ destination });
    drop("ask", destination, { folder / "a" });
    desktop.alerts.answers = { 3 };
    desktop.alerts.whileUp = [&] { drop("move", destination, { folder / "a" }); };
    bridge().start();
    EXPECT_TRUE(waiting().empty());
    EXPECT_EQ(folder.names("Dest"), (Names { "a" }));
}

TEST_F(FinderSyncStartTest, ASnapshotIsWrittenInTheBackground)
{
    folder.folder(std::string(items) + "/A/inner");
    bridge().start();
    EXPECT_FALSE(platform().fileManager->fileExists(folder / snapshotFile));
    // The main thread has read nothing below the top level.
    EXPECT_EQ(desktop.fileManager.listed, (URLs { itemsURL, requestsURL, requestsURL }));
    desktop.dispatch.runBackground();
    EXPECT_EQ(publishedNames(), (Names { "A" }));
    EXPECT_EQ(published().roots.front().children.front().name, "inner");
}

TEST_F(FinderSyncStartTest, TheBackgroundTaskNeedsNothingOfTheMainThread)
{
    folder.folder(std::string(items) + "/A/inner");
    bridge().start();
    // It would stop the process.
    std::thread([&] { desktop.dispatch.runBackground(); }).join();
    EXPECT_EQ(publishedNames(), (Names { "A" }));
}

TEST_F(FinderSyncStartTest, AChangeOfTheRequestsFolderTakesRequestsAndRefreshesNothing)
{
    start();
    drop("request.json", "{}");
    desktop.dispatch.touch(requestsURL);
    EXPECT_TRUE(waiting().empty());
    EXPECT_FALSE(isRefreshed());
}

TEST_F(FinderSyncStartTest, AChangeOfTheItemsFolderRefreshesAndTakesNoRequests)
{
    start();
    drop("request.json", "{}");
    folder.folder(std::string(items) + "/A");
    desktop.dispatch.touch(itemsURL);
    EXPECT_TRUE(isRefreshed());
    EXPECT_EQ(publishedNames(), (Names { "A" }));
    EXPECT_EQ(waiting(), (Names { "request.json" }));
}

TEST_F(FinderSyncStartTest, AnItemsFolderThatGoesWithWhatIsInItRefreshes)
{
    folder.folder(std::string(items) + "/A");
    start();
    EXPECT_EQ(publishedNames(), (Names { "A" }));
    folder.remove(std::string(items) + "/A");
    folder.remove(items);
    desktop.dispatch.remove(itemsURL);
    EXPECT_TRUE(isRefreshed());
    EXPECT_TRUE(publishedNames().empty());
}

TEST_F(FinderSyncStartTest, AnItemsFolderThatHoldsTheSnapshotIsNotWatched)
{
    chooseItemsFolder(bridge().supportDir());
    start();
    EXPECT_EQ(desktop.dispatch.watched(), URLs { requestsURL });
    tick();
    EXPECT_TRUE(isRefreshed());
}

TEST_F(FinderSyncStartTest, EveryDeliveryIsOneRefresh)
{
    start();
    auto const before = desktop.fileContents.timesUsed(folder / snapshotFile);
    for (int number = 0; number < 3; ++number)
        desktop.dispatch.touch(itemsURL);
    desktop.dispatch.runBackground();
    EXPECT_EQ(desktop.fileContents.timesUsed(folder / snapshotFile) - before, 3);
}

TEST_F(FinderSyncStartTest, AChangeInsideASubfolderShowsAtTheTimersTick)
{
    folder.folder(std::string(items) + "/A");
    start();
    folder.folder(std::string(items) + "/A/inner");
    desktop.dispatch.touch(itemsURL.appendingPathComponent("A"));
    EXPECT_FALSE(isRefreshed());
    tick();
    EXPECT_TRUE(isRefreshed());
    EXPECT_EQ(published().roots.front().children.front().name, "inner");
}

TEST_F(FinderSyncStartTest, TheTimerRefreshesAgainAndAgainAndKeepsTheWatches)
{
    start();
    for (int number = 0; number < 3; ++number) {
        EXPECT_FALSE(isRefreshed());
        tick();
        EXPECT_TRUE(isRefreshed());
    }
    EXPECT_EQ(desktop.dispatch.watched(), (URLs { requestsURL, itemsURL }));
    EXPECT_EQ(desktop.dispatch.timerCount(), 1u);
}

TEST_F(FinderSyncStartTest, TheTimerTakesNoRequestsWhileTheirFolderIsWatched)
{
    start();
    drop("request.json", "{}");
    tick();
    EXPECT_EQ(waiting(), (Names { "request.json" }));
}

TEST_F(FinderSyncStartTest, ChangesOfSettingsAloneRefreshNothing)
{
    start();
    desktop.defaults.values["sortMode"] = std::string("dateModified");
    EXPECT_FALSE(isRefreshed());
}

TEST_F(FinderSyncStartTest, AnotherItemsFolderIsWatchedInThePlaceOfTheFirst)
{
    start();
    auto const other = folder.folder("other");
    folder.folder("other/B");
    chooseItemsFolder(other);
    bridge().watchItemsFolder();
    bridge().refreshSnapshot();
    EXPECT_TRUE(isRefreshed());
    EXPECT_EQ(publishedNames(), (Names { "B" }));
    EXPECT_EQ(desktop.dispatch.watched(), (URLs { requestsURL, other }));
    desktop.dispatch.touch(itemsURL);
    EXPECT_FALSE(isRefreshed());
    desktop.dispatch.touch(other);
    EXPECT_TRUE(isRefreshed());
}

TEST_F(FinderSyncStartTest, TheOldWatchIsGoneWhereTheOtherFolderCannotBeWatched)
{
    start();
    auto const other = folder.folder("other");
    desktop.dispatch.unwatchable = { other };
    chooseItemsFolder(other);
    bridge().watchItemsFolder();
    EXPECT_EQ(desktop.dispatch.watched(), (URLs { requestsURL }));
}

TEST_F(FinderSyncStartTest, WithoutWatchesTheTimerStillRefreshes)
{
    desktop.dispatch.unwatchable = { itemsURL, requestsURL };
    start();
    EXPECT_TRUE(desktop.dispatch.watched().empty());
    folder.folder(std::string(items) + "/A");
    drop("request.json", "{}");
    tick();
    EXPECT_TRUE(isRefreshed());
    EXPECT_EQ(publishedNames(), (Names { "A" }));
    EXPECT_TRUE(waiting().empty());
}

TEST_F(FinderSyncStartTest, AWatchThatCouldNotBeHadIsTriedAgainAtTheTick)
{
    desktop.dispatch.unwatchable = { itemsURL, requestsURL };
    start();
    desktop.dispatch.unwatchable.clear();
    tick();
    EXPECT_EQ(desktop.dispatch.watched().size(), 2u);
    drop("request.json", "{}");
    desktop.dispatch.touch(requestsURL);
    EXPECT_TRUE(waiting().empty());
}

TEST_F(FinderSyncStartTest, AnItemsFolderThatCameBackIsWatchedAgainFromTheTickOn)
{
    start();
    folder.remove(items);
    desktop.dispatch.unwatchable = { itemsURL };
    desktop.dispatch.remove(itemsURL);
    tick();
    EXPECT_TRUE(isRefreshed());
    EXPECT_EQ(desktop.dispatch.watched(), (URLs { requestsURL }));

    folder.folder(std::string(items) + "/A");
    desktop.dispatch.unwatchable.clear();
    tick();
    EXPECT_EQ(desktop.dispatch.watched(), (URLs { requestsURL, itemsURL }));
    EXPECT_TRUE(isRefreshed());
    EXPECT_EQ(publishedNames(), (Names { "A" }));
    desktop.dispatch.touch(itemsURL);
    EXPECT_TRUE(isRefreshed());
}

TEST_F(FinderSyncStartTest, ARequestsFolderThatCameBackIsWatchedAgainAndItsRequestsAreTaken)
{
    start();
    folder.remove(requests);
    desktop.dispatch.remove(requestsURL);
    EXPECT_EQ(desktop.dispatch.watched(), (URLs { itemsURL }));
    folder.folder(requests);
    drop("request.json", "{}");
    tick();
    EXPECT_TRUE(waiting().empty());
    drop("request.json", "{}");
    desktop.dispatch.touch(requestsURL);
    EXPECT_TRUE(waiting().empty());
}

TEST_F(FinderSyncStartTest, AFolderThatAnotherOneHasReplacedIsWatchedInItsPlace)
{
    start();
    // The watch has heard nothing of it: a link above the folder leads elsewhere, say.
    std::filesystem::rename(itemsURL.path(), (folder / "old items").path());
    std::filesystem::rename(requestsURL.path(), (folder / "old requests").path());
    folder.folder(items);
    folder.folder(requests);
    drop("request.json", "{}");
    auto const before = desktop.dispatch.watchesMade();
    tick();
    EXPECT_EQ(desktop.dispatch.watchesMade() - before, 2);
    EXPECT_EQ(desktop.dispatch.watched().size(), 2u);
    EXPECT_TRUE(waiting().empty());
    tick();
    EXPECT_EQ(desktop.dispatch.watchesMade() - before, 2);
}

TEST_F(FinderSyncStartTest, AMissingItemsFolderGivesAnEmptySnapshot)
{
    start();
    folder.remove(items);
    bridge().refreshSnapshot();
    EXPECT_TRUE(isRefreshed());
    EXPECT_TRUE(published().roots.empty());
}

TEST_F(FinderSyncStartTest, TwoRefreshesAreTwoTasksOfWhichTheLastHolds)
{
    folder.folder(std::string(items) + "/A");
    bridge().refreshSnapshot();
    folder.folder(std::string(items) + "/B");
    bridge().refreshSnapshot();
    desktop.dispatch.runBackground();
    EXPECT_EQ(desktop.fileContents.timesUsed(folder / snapshotFile), 2);
    EXPECT_EQ(publishedNames(), (Names { "A", "B" }));
}

TEST_F(FinderSyncStartTest, TheSituationOfASnapshotIsBlank)
{
    folder.folder(std::string(items) + "/selection---f");
    folder.folder(std::string(items) + "/no selection---N");
    folder.folder(std::string(items) + "/text---t");
    folder.folder(std::string(items) + "/in front x-!!!");
    folder.folder(std::string(items) + "/not in front !x-!!!");
    start();
    EXPECT_EQ(publishedNames(), (Names { "no selection", "not in front" }));
    EXPECT_TRUE(desktop.finder.questions.empty());
}

TEST_F(FinderSyncStartTest, OffTheMainThreadTheProcessStops)
{
    start();
    desktop.log.echoToStandardError();
    std::vector<std::function<void()>> const calls {
        [] { bridge().start(); },
        [] { bridge().refreshSnapshot(); },
        [] { bridge().watchItemsFolder(); },
        [] { bridge().processPendingRequests(); },
        [&] { desktop.dispatch.touch(itemsURL); },
        [&] { desktop.dispatch.touch(requestsURL); },
        [&] { desktop.dispatch.remove(itemsURL); },
        [&] { desktop.dispatch.remove(requestsURL); },
        [&] { tick(); },
    };
    for (auto const& call : calls)
        EXPECT_DEATH(std::thread(call).join(), "another thread");
}

}
}
