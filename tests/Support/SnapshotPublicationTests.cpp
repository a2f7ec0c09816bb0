#include "Fakes/NoDefaultMemory.h"
#include "Support/FinderSyncTest.h"
#include "Support/SnapshotPublication.h"

#include <chrono>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

using Names = std::vector<std::string>;

/// The time of the fake, and when it was asked for.
class WatchedClock final : public Clock {
public:
    explicit WatchedClock(FakeClock const& clock)
        : clock_(clock)
    {
    }
    FileTime now() const override
    {
        ++timesAsked;
        if (asked)
            asked();
        return clock_.now();
    }

    std::function<void()> asked;
    mutable int timesAsked = 0;

private:
    FakeClock const& clock_;
};

class SnapshotPublicationTest : public FinderSyncTest {
protected:
    void publishFolders(std::vector<TopLevelFolder> folders) const
    {
        SnapshotPublication const publication {
            .folders = std::move(folders),
            .supportDir = folder / "support/Marrowick",
            .snapshotURL = folder / snapshotFile,
            .fileManager = &desktop.fileManager,
            .fileContents = &desktop.fileContents,
            .collation = platform().collation.get(),
            .clock = &clock,
        };
        publication();
    }

    WatchedClock clock { desktop.clock };
};

TEST_F(SnapshotPublicationTest, WithoutFoldersAnEmptySnapshotIsWritten)
{
    publishFolders({});
    EXPECT_EQ(folder.content(snapshotFile), R"({"generated":"2026-11-16T00:44:41Z","roots":[]})");
}

TEST_F(SnapshotPublicationTest, TheFileIsTheRecordOfTheTreeAndNothingElse)
{
    folder.folder("A/b");
    auto path = folder.url().path();
    for (std::size_t slash = 0; (slash = path.find('/', slash)) != std::string::npos; slash += 2)
        path.insert(slash, 1, '\\');
    publishFolders({ { "Title", folder / "A" } });
    EXPECT_EQ(folder.content(snapshotFile),
        R"({"generated":"2026-11-16T00:44:41Z","roots":[{"name":"Title","path":")" + path
            + R"(\/A","children":[{"name":"b","path":")" + path + R"(\/A\/b","children":[]}]}]})");
}

TEST_F(SnapshotPublicationTest, EverySnapshotHasItsOwnDate)
{
    publishFolders({});
    auto const first = published().generated;
    desktop.clock.time += std::chrono::seconds(1);
    publishFolders({});
    EXPECT_EQ(published().generated - first, std::chrono::seconds(1));
}

TEST_F(SnapshotPublicationTest, TheDateIsTakenAfterTheWalk)
{
    clock.asked = [&] { EXPECT_EQ(desktop.fileManager.listed, (std::vector { folder / "A", folder / "A/b" })); };
    folder.folder("A/b");
    publishFolders({ { "A", folder / "A" } });
    EXPECT_EQ(clock.timesAsked, 1);
}

TEST_F(SnapshotPublicationTest, TheOldFileIsReplacedAndNothingIsLeftBesideIt)
{
    folder.file(snapshotFile, std::string(100'000, 'x'));
    publishFolders({});
    EXPECT_EQ(folder.content(snapshotFile), R"({"generated":"2026-11-16T00:44:41Z","roots":[]})");
    EXPECT_EQ(folder.names("support/Marrowick"), (Names { "Marrowick Items", "Requests", "menu-snapshot.json" }));
}

TEST_F(SnapshotPublicationTest, ALinkInThePlaceOfTheFileIsReplacedAndNotFollowed)
{
    folder.file("target", "content");
    folder.link(snapshotFile, (folder / "target").path());
    publishFolders({});
    EXPECT_EQ(folder.content("target"), "content");
    EXPECT_TRUE(published().roots.empty());
    EXPECT_EQ(folder.content(snapshotFile), R"({"generated":"2026-11-16T00:44:41Z","roots":[]})");
}

TEST_F(SnapshotPublicationTest, TheFolderIsMadeBeforeEveryWrite)
{
    folder.remove("support");
    publishFolders({});
    EXPECT_EQ(folder.names("support/Marrowick"), (Names { "menu-snapshot.json" }));
}

TEST_F(SnapshotPublicationTest, WhatCannotBeWrittenLeavesTheOldFileAndSaysNothing)
{
    folder.file(snapshotFile, "old");
    desktop.fileContents.inaccessible = { folder / snapshotFile };
    publishFolders({});
    EXPECT_EQ(folder.content(snapshotFile), "old");
    EXPECT_TRUE(desktop.log.lines().empty());
}

TEST_F(SnapshotPublicationTest, AFolderInThePlaceOfTheFileStays)
{
    folder.folder(std::string(snapshotFile) + "/inner");
    publishFolders({});
    EXPECT_EQ(folder.names(snapshotFile), (Names { "inner" }));
    EXPECT_EQ(folder.names("support/Marrowick"), (Names { "Marrowick Items", "Requests", "menu-snapshot.json" }));
}

TEST_F(SnapshotPublicationTest, AFolderThatCannotBeMadeStopsNothingElse)
{
    folder.remove("support");
    folder.file("support", "in the way");
    publishFolders({});
    EXPECT_EQ(folder.content("support"), "in the way");
    EXPECT_TRUE(desktop.log.lines().empty());
}

TEST_F(SnapshotPublicationTest, WhatIsFoundTakesNoMemoryPieceByPiece)
{
    folder.folder("A/" + std::string(100, 'b') + "/c");
    {
        NoDefaultMemory const onlyTheBlock;
        publishFolders({ { "A", folder / "A" } });
    }
    EXPECT_EQ(published().roots.front().children.front().children.front().name, "c");
}

TEST_F(SnapshotPublicationTest, AFolderThatCannotBeNamedKeepsNoOtherFromBeingWritten)
{
    folder.folder("b/\xff");
    publishFolders({ { "a\xff", folder / "a\xff" }, { "b", folder / "b" } });
    EXPECT_EQ(published().roots, (SnapshotNodes { { "b", (folder / "b").path(), {} } }));
}

}
}
