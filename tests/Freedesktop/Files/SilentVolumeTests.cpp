#include "Freedesktop/TestVolumes.h"

#include "Fakes/NamesOfFolders.h"
#include "Fakes/TemporaryFolder.h"
#include "Freedesktop/Files/DoubtfulVolumes.h"
#include "Freedesktop/Files/FolderWays.h"
#include "Freedesktop/Files/FreedesktopFileManager.h"
#include "Freedesktop/Files/TimelyAnswers.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <sys/mount.h>
#include <thread>

namespace marrowick {
namespace {

using Clock = std::chrono::steady_clock;

/// What the items menu asks for in the order of dates, which is the most.
constexpr auto menuKeys = ResourceKey::isDirectory | ResourceKey::isAliasFile | ResourceKey::aliasTargetIsDirectory
    | ResourceKey::directoryIsApplication | ResourceKey::contentModificationDate;

constexpr FileTime serversDate { std::chrono::seconds(SilentVolume::modified) };

/// Whether the condition holds in the end: on a busy machine a server that answers may be late, too.
bool eventually(std::function<bool()> const& condition)
{
    auto const end = Clock::now() + std::chrono::seconds(10);
    while (!condition()) {
        if (Clock::now() > end)
            return false;
        std::this_thread::yield();
    }
    return true;
}

bool isDoubtful(std::string const& path)
{
    auto const volumes = currentDoubtfulVolumes();
    return volumes && std::find(volumes->begin(), volumes->end(), path) != volumes->end();
}

/// A folder with a volume directly in it and links that lead into the volume.
class SilentVolumeTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (!hasOwnMounts())
            GTEST_SKIP() << "this system allows no mounts of one's own";
        folder.folder("menu/nas");
        folder.folder("plain");
        folder.link("menu/to root", "nas");
        folder.link("menu/to folder", path("menu/nas/folder"));
        folder.link("menu/to missing", "nas/missing");
        folder.link("menu/roundabout", path("plain/../detour"));
        folder.link("detour", "menu/nas/folder");
        folder.link("menu/to plain", "../plain");
        folder.file("menu/file");
        volume.emplace(path("menu/nas"));
        if (!volume->isMounted())
            GTEST_SKIP() << "this system has no file systems of its users";
        ASSERT_TRUE(eventually([&] { return isDoubtful(path("menu/nas")); }));
    }

    std::string path(std::string const& name) const { return top + '/' + name; }
    FileURL url(std::string const& name) const { return FileURL(path(name)); }

    std::map<std::string, ResourceValues> list(ResourceKeys keys = menuKeys) const
    {
        std::map<std::string, ResourceValues> items;
        auto const listing = files.contentsOfDirectory(url("menu"), keys, HiddenItems::skipped);
        EXPECT_TRUE(listing);
        if (listing) {
            for (auto const& [item, values] : listing.value())
                items.emplace(item.lastPathComponent(), values);
        }
        return items;
    }

    /// Waits until what was asked of the volume is answered, if only by an error.
    bool isSettled() const
    {
        return eventually([&] { return isDoneInTime(path("menu/nas"), patienceForListing, [] {}); });
    }

    /// The same list, once everything that a server has to tell is told.
    std::map<std::string, ResourceValues> listAnswered() const
    {
        auto items = list();
        EXPECT_TRUE(eventually([&] {
            items = list();
            return items["nas"].contentModificationDate && items["to folder"].isApplication
                && items["to root"].isApplication && items["roundabout"].isApplication
                && items["to missing"].aliasTargetIsDirectory;
        }));
        return items;
    }

    TemporaryFolder folder;
    std::string top = std::filesystem::canonical(folder.url().path());
    FreedesktopFileManager files;
    std::optional<SilentVolume> volume;
};

TEST_F(SilentVolumeTest, LinksIntoItAreListedAsAliasesOfWhichNothingIsKnown)
{
    Rescue const rescue(*volume);
    auto items = list();
    ASSERT_EQ(items.size(), 7U);
    for (auto const* name : { "to root", "to folder", "to missing", "roundabout" }) {
        EXPECT_EQ(items[name].isAliasFile, true) << name;
        EXPECT_EQ(items[name].isDirectory, false) << name;
        EXPECT_EQ(items[name].aliasTargetIsDirectory, std::nullopt) << name;
        EXPECT_EQ(items[name].isApplication, std::nullopt) << name;
        EXPECT_TRUE(items[name].contentModificationDate) << "the link's own date, " << name;
    }
    EXPECT_EQ(items["to plain"].aliasTargetIsDirectory, true);
    EXPECT_EQ(items["to plain"].isApplication, false);
    EXPECT_EQ(items["file"].isDirectory, false);
    EXPECT_TRUE(items["file"].contentModificationDate);
}

TEST_F(SilentVolumeTest, ItsMountPointIsAFolderWithoutADate)
{
    Rescue const rescue(*volume);
    auto const values = list()["nas"];
    EXPECT_EQ(values.isDirectory, true);
    EXPECT_EQ(values.isAliasFile, false);
    EXPECT_EQ(values.isApplication, false);
    EXPECT_EQ(values.contentModificationDate, std::nullopt);
    EXPECT_EQ(list(ResourceKey::fileSize)["nas"].fileSize, std::nullopt);
}

TEST_F(SilentVolumeTest, IsWaitedForOnce)
{
    Rescue const rescue(*volume);
    list();
    auto const threads = threadCount();
    auto const begin = Clock::now();
    for (int time = 0; time < 20; ++time)
        list();
    EXPECT_LT(Clock::now() - begin, 20 * patienceForItem / 2);
    EXPECT_EQ(threadCount(), threads);
}

TEST_F(SilentVolumeTest, EveryQuestionAboutOneItemEnds)
{
    Rescue const rescue(*volume);
    for (auto const* name : { "menu/nas", "menu/to root", "menu/to folder" }) {
        EXPECT_FALSE(files.fileExists(url(name))) << name;
        EXPECT_FALSE(files.identity(url(name))) << name;
        EXPECT_FALSE(files.resolvingAlias(url(name))) << name;
        EXPECT_TRUE(files.isNameTaken(url(name))) << name;
        EXPECT_FALSE(files.contentsOfDirectory(url(name), menuKeys, HiddenItems::skipped)) << name;
        EXPECT_FALSE(namesOfFolders(*files.walk(url(name)))) << name;
        EXPECT_FALSE(files.visitNames(url(name), [](std::string_view) {})) << name;
    }
    auto const link = files.resourceValues(url("menu/to folder"), menuKeys);
    EXPECT_EQ(link.isAliasFile, true);
    EXPECT_EQ(link.aliasTargetIsDirectory, std::nullopt);
    EXPECT_TRUE(link.contentModificationDate);
    EXPECT_EQ(files.resourceValues(url("menu/nas"), menuKeys).contentModificationDate, std::nullopt);
}

TEST_F(SilentVolumeTest, AFolderThatMayStandThereIsNotMade)
{
    Rescue const rescue(*volume);
    auto const outcome = files.createDirectory(url("menu/nas"));
    ASSERT_FALSE(outcome);
    EXPECT_NE(outcome.error().message.find(std::strerror(ETIMEDOUT)), std::string::npos) << outcome.error().message;
}

TEST_F(SilentVolumeTest, AFolderOfWhichThePathEndsInADotIsTheSame)
{
    // Nothing of it is asked of the volume.
    for (auto const* name : { "menu/./nas", "menu/./to folder", "plain/../menu/./nas" })
        EXPECT_EQ(volumeEntered(path(name)), path("menu/nas")) << name;
    EXPECT_EQ(volumeEntered(path("menu/./to plain")), std::nullopt);
}

TEST_F(SilentVolumeTest, AWalkGoesPastIt)
{
    folder.folder("menu/sub/deeper");
    Rescue const rescue(*volume);
    auto const top = files.walk(url("menu"));
    auto names = namesOfFolders(*top);
    ASSERT_TRUE(names);
    std::sort(names.value().begin(), names.value().end());
    EXPECT_EQ(names.value(), (std::vector<std::string> { "nas", "sub" }));
    EXPECT_FALSE(namesOfFolders(*top->folder("nas")));
    auto const below = namesOfFolders(*top->folder("sub"));
    ASSERT_TRUE(below);
    EXPECT_EQ(below.value(), std::vector<std::string> { "deeper" });
    EXPECT_FALSE(namesOfFolders(*files.walk(url("."))->folder("menu")->folder("nas")));
}

TEST_F(SilentVolumeTest, AnAnswerThatComesLateLetsItBeAskedAgain)
{
    Rescue const rescue(*volume);
    EXPECT_EQ(list()["to folder"].aliasTargetIsDirectory, std::nullopt);
    volume->answer();
    auto items = listAnswered();
    EXPECT_EQ(items["to folder"].aliasTargetIsDirectory, true);
    EXPECT_EQ(items["to folder"].isApplication, false);
    EXPECT_EQ(items["nas"].contentModificationDate, serversDate);
}

TEST_F(SilentVolumeTest, AServerThatAnswersIsHeard)
{
    Rescue const rescue(*volume);
    volume->answer();
    auto items = listAnswered();
    for (auto const* name : { "to root", "to folder", "roundabout" }) {
        EXPECT_EQ(items[name].aliasTargetIsDirectory, true) << name;
        EXPECT_EQ(items[name].isApplication, false) << name;
    }
    EXPECT_EQ(items["to missing"].aliasTargetIsDirectory, false);
    EXPECT_EQ(items["nas"].isDirectory, true);
    EXPECT_EQ(items["nas"].contentModificationDate, serversDate);

    EXPECT_TRUE(eventually([&] { return files.fileExists(url("menu/to folder")); }));
    EXPECT_FALSE(files.fileExists(url("menu/to missing")));
    EXPECT_TRUE(eventually([&] { return files.identity(url("menu/nas")).has_value(); }));
    EXPECT_TRUE(eventually([&] {
        auto const resolved = files.resolvingAlias(url("menu/roundabout"));
        return resolved && resolved.value() == url("menu/nas/folder");
    }));
    auto const inside = files.contentsOfDirectory(url("menu/to root"), menuKeys, HiddenItems::skipped);
    ASSERT_TRUE(inside);
    EXPECT_TRUE(inside.value().empty());
    EXPECT_TRUE(namesOfFolders(*files.walk(url("menu"))->folder("nas")));
}

TEST_F(SilentVolumeTest, AServerThatIsGoneIsAnAnswer)
{
    Rescue const rescue(*volume);
    list();
    volume->hangUp();
    ASSERT_TRUE(isSettled());
    auto const link = list()["to folder"];
    EXPECT_EQ(link.isAliasFile, true);
    EXPECT_EQ(link.aliasTargetIsDirectory, std::nullopt);
    EXPECT_FALSE(files.resolvingAlias(url("menu/to folder")));
    volume.reset();
    EXPECT_EQ(list()["to root"].aliasTargetIsDirectory, true) << "what was mounted over is back";
}

TEST_F(SilentVolumeTest, WhatIsMountedOverItIsAskedAsEver)
{
    Rescue const rescue(*volume);
    ASSERT_EQ(::mount("memory", path("menu/nas").c_str(), "ramfs", 0, nullptr), 0);
    ASSERT_TRUE(eventually([&] { return !isDoubtful(path("menu/nas")); }));
    auto const threads = threadCount();
    auto const items = list();
    EXPECT_EQ(items.at("to root").aliasTargetIsDirectory, true);
    EXPECT_TRUE(items.at("nas").contentModificationDate);
    EXPECT_EQ(threadCount(), threads);
    ::umount2(path("menu/nas").c_str(), MNT_DETACH);
}

}
}
