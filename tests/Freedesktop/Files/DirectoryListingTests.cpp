#include "Freedesktop/Files/FreedesktopFileManager.h"

#include "AsOtherUser.h"
#include "Fakes/TemporaryFolder.h"

#include <algorithm>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

namespace marrowick {
namespace {

constexpr auto noKeys = ResourceKeys();

class DirectoryListingTest : public testing::Test {
protected:
    std::vector<ListedItem> list(FileURL const& url, ResourceKeys keys, HiddenItems hidden) const
    {
        auto result = files.contentsOfDirectory(url, keys, hidden);
        EXPECT_TRUE(result.hasValue()) << (result ? "" : result.error().message);
        return result ? std::move(result).value() : std::vector<ListedItem>();
    }

    std::set<std::string> names(HiddenItems hidden = HiddenItems::skipped) const
    {
        std::set<std::string> result;
        for (auto const& item : list(folder.url(), noKeys, hidden)) {
            EXPECT_EQ(item.url.deletingLastPathComponent(), folder.url());
            EXPECT_TRUE(result.emplace(item.url.lastPathComponent()).second);
        }
        return result;
    }

    std::map<std::string, ListedItem, std::less<>> items(ResourceKeys keys) const
    {
        std::map<std::string, ListedItem, std::less<>> result;
        for (auto& item : list(folder.url(), keys, HiddenItems::skipped))
            result.emplace(std::string(item.url.lastPathComponent()), std::move(item));
        return result;
    }

    std::optional<ErrorKind> failure(FileURL const& url) const
    {
        auto const result = files.contentsOfDirectory(url, noKeys, HiddenItems::skipped);
        return result ? std::nullopt : std::optional(result.error().kind);
    }

    TemporaryFolder folder;
    FreedesktopFileManager files;
};

TEST_F(DirectoryListingTest, AnEmptyFolderHasNoItems)
{
    EXPECT_EQ(names(), std::set<std::string>());
    EXPECT_EQ(names(HiddenItems::included), std::set<std::string>());
}

TEST_F(DirectoryListingTest, NamesKeepTheirBytes)
{
    std::set<std::string> const expected { "plain", "two\nlines", "broken \xFF\xC3", "caf\xC3\xA9", "cafe\xCC\x81", " ",
        "back\\slash", "\x01", std::string(255, 'x') };
    for (auto const& name : expected)
        folder.file(name);
    EXPECT_EQ(names(), expected);
}

TEST_F(DirectoryListingTest, HiddenItemsAreLeftOutOnRequest)
{
    folder.file("shown");
    folder.file(".dot");
    folder.folder(".folder");
    folder.file("..two");
    EXPECT_EQ(names(), (std::set<std::string> { "shown" }));
    EXPECT_EQ(names(HiddenItems::included), (std::set<std::string> { "shown", ".dot", ".folder", "..two" }));
}

TEST_F(DirectoryListingTest, TheHiddenFileHidesTheNamesItHolds)
{
    for (auto const* name : { "a", "b", "c", "d\xFF", "with space", "B" })
        folder.file(name);
    folder.file(".hidden", "b\n\nd\xFF\nwith space\nmissing\nlast\nc");
    EXPECT_EQ(names(), (std::set<std::string> { "a", "B" }));
    EXPECT_EQ(
        names(HiddenItems::included), (std::set<std::string> { "a", "b", "B", "c", "d\xFF", "with space", ".hidden" }));
}

TEST_F(DirectoryListingTest, TheHiddenFileMayBeALinkToOne)
{
    folder.file("a");
    folder.file("list.txt", "a\n");
    folder.link(".hidden", "list.txt");
    EXPECT_EQ(names(), (std::set<std::string> { "list.txt" }));
}

TEST_F(DirectoryListingTest, AHiddenFileThatIsNoneIsNotWaitedFor)
{
    folder.file("a");
    folder.fifo(".hidden");
    EXPECT_EQ(names(), (std::set<std::string> { "a" }));
    folder.remove(".hidden");
    folder.folder(".hidden");
    EXPECT_EQ(names(), (std::set<std::string> { "a" }));
    folder.remove(".hidden");
    folder.link(".hidden", ".hidden");
    EXPECT_EQ(names(), (std::set<std::string> { "a" }));
    folder.remove(".hidden");
    folder.file(".hidden", "a\n" + std::string(2 << 20, '\n'));
    EXPECT_EQ(names(), (std::set<std::string> { "a" })) << "a huge list is not read";
}

TEST_F(DirectoryListingTest, ValuesAreTheItemsOwn)
{
    folder.file("file");
    folder.folder("folder");
    folder.fifo("fifo");
    folder.link("to file", "file");
    folder.link("to folder", "folder");
    folder.link("to link", "to folder");
    folder.link("dangling", "missing");
    folder.link("loop", "loop");
    folder.link("below file", "file/x");
    auto const found = items(ResourceKey::isDirectory | ResourceKey::isAliasFile | ResourceKey::aliasTargetIsDirectory
        | ResourceKey::isApplication);

    struct Row {
        char const* name;
        bool isDirectory;
        bool isAlias;
        std::optional<bool> leadsToDirectory;
        std::optional<bool> isApplication;
    };
    Row const rows[] = {
        { "file", false, false, std::nullopt, false },
        { "folder", true, false, std::nullopt, false },
        { "fifo", false, false, std::nullopt, false },
        { "to file", false, true, false, false },
        { "to folder", false, true, true, false },
        { "to link", false, true, true, false },
        { "dangling", false, true, false, std::nullopt },
        { "loop", false, true, false, std::nullopt },
        { "below file", false, true, false, std::nullopt },
    };
    ASSERT_EQ(found.size(), std::size(rows));
    for (auto const& row : rows) {
        auto const& item = found.find(row.name)->second;
        EXPECT_EQ(item.values.isDirectory, row.isDirectory) << row.name;
        EXPECT_EQ(item.values.isAliasFile, row.isAlias) << row.name;
        EXPECT_EQ(item.values.aliasTargetIsDirectory, row.leadsToDirectory) << row.name;
        EXPECT_EQ(item.values.isApplication, row.isApplication) << row.name;
        EXPECT_EQ(item.url.hasDirectoryPath(), row.isDirectory) << row.name;
        auto const single = files.resourceValues(item.url,
            ResourceKey::isDirectory | ResourceKey::isAliasFile | ResourceKey::aliasTargetIsDirectory
                | ResourceKey::isApplication);
        EXPECT_EQ(single.isDirectory, row.isDirectory) << row.name;
        EXPECT_EQ(single.isAliasFile, row.isAlias) << row.name;
        EXPECT_EQ(single.aliasTargetIsDirectory, row.leadsToDirectory) << row.name;
        EXPECT_EQ(single.isApplication, row.isApplication) << row.name;
    }
}

void setTime(FileURL const& url, timespec time)
{
    timespec const times[] = { { .tv_sec = 0, .tv_nsec = UTIME_OMIT }, time };
    ASSERT_EQ(::utimensat(AT_FDCWD, url.path().c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
}

TEST_F(DirectoryListingTest, DatesAreTheLinksOwnToTheNanosecond)
{
    setTime(folder.file("file"), { .tv_sec = 1'700'000'000, .tv_nsec = 123'456'789 });
    setTime(folder.link("link", "file"), { .tv_sec = 1'600'000'000, .tv_nsec = 1 });
    setTime(folder.folder("old"), { .tv_sec = -1, .tv_nsec = 999'999'999 });
    auto const found = items(ResourceKey::contentModificationDate);
    auto const nanoseconds = [&](char const* name) {
        return found.find(name)->second.values.contentModificationDate.value().time_since_epoch().count();
    };
    EXPECT_EQ(nanoseconds("file"), 1'700'000'000'123'456'789);
    EXPECT_EQ(nanoseconds("link"), 1'600'000'000'000'000'001);
    EXPECT_EQ(nanoseconds("old"), -1);
    EXPECT_EQ(files.resourceValues(folder / "link", ResourceKey::contentModificationDate).contentModificationDate,
        found.find("link")->second.values.contentModificationDate);
}

TEST_F(DirectoryListingTest, ADateThatIsTooFarOffIsTheLastOne)
{
    // The year 2400, which the file system can hold and a count of nanoseconds cannot.
    auto const file = folder.file("file");
    setTime(file, { .tv_sec = 13'569'465'600, .tv_nsec = 5 });
    struct stat status { };
    ASSERT_EQ(::lstat(file.path().c_str(), &status), 0);
    if (status.st_mtim.tv_sec != 13'569'465'600)
        GTEST_SKIP() << "this file system holds no such date";
    EXPECT_EQ(items(ResourceKey::contentModificationDate).find("file")->second.values.contentModificationDate,
        FileTime::max());
    EXPECT_EQ(files.identity(file)->modified, FileTime::max());
}

TEST_F(DirectoryListingTest, OnlyWhatIsAskedForIsRead)
{
    folder.link("link", "missing");
    auto const values = items(noKeys).find("link")->second.values;
    EXPECT_FALSE(values.contentModificationDate.has_value());
    EXPECT_FALSE(values.aliasTargetIsDirectory.has_value());
    EXPECT_FALSE(values.isApplication.has_value());
}

// Some file systems do not tell an entry's kind in the listing; what is known of one item beforehand is the same.
TEST_F(DirectoryListingTest, AnItemOfUnknownKindIsAsked)
{
    folder.folder("folder");
    auto const values = files.resourceValues(folder / "folder", ResourceKey::isDirectory | ResourceKey::isAliasFile);
    EXPECT_EQ(values.isDirectory, true);
    EXPECT_EQ(values.isAliasFile, false);
    EXPECT_FALSE(values.contentModificationDate.has_value());
}

TEST_F(DirectoryListingTest, DirectoriesCanBeAskedForAlone)
{
    folder.folder("Mail.app");
    folder.folder("Mail.app/inner");
    folder.folder("plain");
    folder.file("tool.desktop", "[Desktop Entry]\nType=Application\n");
    folder.link("to app", "Mail.app");
    folder.link("whole path", (folder / "Mail.app").path());
    folder.link("to link", "to app");
    folder.link("named.app", "plain");
    folder.link("chain.app", "named.app");
    folder.link("slash", "Mail.app/");
    folder.link("link and slash", "to app/");
    folder.link("dots", "Mail.app/inner/..");
    folder.link("dot", "Mail.app/.");
    folder.link("self", ".");
    folder.link("to entry", "tool.desktop");
    folder.link("dangling.app", "missing");

    struct Row {
        char const* name;
        std::optional<bool> isApplication;
    };
    Row const rows[] = {
        { "Mail.app", true },
        { "plain", false },
        { "tool.desktop", std::nullopt },
        { "to app", true },
        { "whole path", true },
        { "to link", true },
        { "named.app", false },
        { "chain.app", false },
        { "slash", true },
        { "link and slash", true },
        { "dots", true },
        { "dot", true },
        { "self", false },
        { "to entry", std::nullopt },
        { "dangling.app", std::nullopt },
    };
    auto const found = items(ResourceKey::isDirectory | ResourceKey::directoryIsApplication);
    ASSERT_EQ(found.size(), std::size(rows));
    for (auto const& row : rows) {
        auto const& item = found.find(row.name)->second;
        EXPECT_EQ(item.values.isApplication, row.isApplication) << row.name;
        EXPECT_EQ(files.resourceValues(item.url, ResourceKey::directoryIsApplication).isApplication, row.isApplication)
            << row.name << ", asked for alone";
    }
}

TEST_F(DirectoryListingTest, ARelativeLinkIsNotSeenFromTheWorkingFolder)
{
    folder.folder("target");
    folder.folder("below");
    folder.folder("below/real.app");
    folder.link("below/target", "real.app");
    auto const link = folder.link("below/link", "target");
    auto const previous = std::filesystem::current_path();
    std::filesystem::current_path(folder.url().path());
    auto const values = files.resourceValues(link, ResourceKey::directoryIsApplication);
    std::filesystem::current_path(previous);
    EXPECT_EQ(values.isApplication, true);
}

// So many that several threads read the dates.
TEST_F(DirectoryListingTest, EachOfManyItemsHasItsOwnDate)
{
    constexpr int count = 3000;
    for (int i = 0; i < count; ++i) {
        auto const path = (folder / std::to_string(i)).path();
        ASSERT_EQ(::symlink("x", path.c_str()), 0);
        setTime(FileURL(path), { .tv_sec = 1'000'000'000 + i, .tv_nsec = i });
    }
    auto const found = list(folder.url(), ResourceKey::contentModificationDate, HiddenItems::skipped);
    ASSERT_EQ(found.size(), static_cast<std::size_t>(count));
    for (auto const& item : found) {
        auto const number = std::stoll(std::string(item.url.lastPathComponent()));
        ASSERT_EQ(item.values.contentModificationDate.value().time_since_epoch().count(),
            (1'000'000'000 + number) * 1'000'000'000 + number);
    }
}

TEST_F(DirectoryListingTest, AMissingItemHasNoValues)
{
    for (auto const& url : { folder / "missing", FileURL(), FileURL(std::string("/\0", 2)) }) {
        auto const values = files.resourceValues(url,
            ResourceKey::isDirectory | ResourceKey::isAliasFile | ResourceKey::contentModificationDate
                | ResourceKey::isApplication | ResourceKey::aliasTargetIsDirectory);
        EXPECT_FALSE(values.isDirectory.has_value());
        EXPECT_FALSE(values.isAliasFile.has_value());
        EXPECT_FALSE(values.contentModificationDate.has_value());
        EXPECT_FALSE(values.isApplication.has_value());
        EXPECT_FALSE(values.aliasTargetIsDirectory.has_value());
    }
}

TEST_F(DirectoryListingTest, ALinkAtTheFolderItselfIsFollowed)
{
    folder.folder("folder");
    folder.file("folder/inside");
    auto const link = folder.link("link", "folder");
    auto const found = list(link, ResourceKey::isDirectory, HiddenItems::skipped);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].url, folder / "link/inside");
    EXPECT_EQ(found[0].values.isDirectory, false);
}

TEST_F(DirectoryListingTest, TheRootIsListed)
{
    auto const found = list(FileURL("/"), noKeys, HiddenItems::skipped);
    EXPECT_TRUE(std::any_of(found.begin(), found.end(), [](auto const& item) { return item.url.path() == "/usr"; }));
}

TEST_F(DirectoryListingTest, AFolderLargerThanOneReadIsWhole)
{
    std::set<std::string> expected;
    for (int i = 0; i < 5000; ++i) {
        auto name = std::to_string(i) + std::string(static_cast<std::size_t>(i) % 200, '-');
        ASSERT_EQ(::symlink("x", (folder / name).path().c_str()), 0);
        expected.insert(std::move(name));
    }
    EXPECT_EQ(names(), expected);
}

TEST_F(DirectoryListingTest, WhatCannotBeListedSaysWhy)
{
    EXPECT_EQ(failure(folder / "missing"), ErrorKind::notFound);
    EXPECT_EQ(failure(FileURL()), ErrorKind::notFound);
    EXPECT_EQ(failure(folder.link("dangling", "missing")), ErrorKind::notFound);
    EXPECT_EQ(failure(folder.link("loop", "loop")), ErrorKind::other);
    EXPECT_TRUE(failure(folder.file("file")).has_value());
    EXPECT_TRUE(failure(folder.fifo("fifo")).has_value());
    EXPECT_EQ(failure(FileURL(folder.url().path() + std::string("\0x", 2))), ErrorKind::notFound);
    EXPECT_EQ(failure(FileURL("/" + std::string(10000, 'x'))), ErrorKind::other);
}

TEST_F(DirectoryListingTest, AFolderThatMayNotBeReadSaysSo)
{
    auto const secret = folder.folder("secret");
    folder.file("secret/inside");
    ASSERT_EQ(::chmod(folder.url().path().c_str(), 0755), 0);
    ASSERT_EQ(::chmod(secret.path().c_str(), 0311), 0);
    EXPECT_EQ(askedWithoutPrivileges([&] {
        return failure(secret) == ErrorKind::noPermission ? std::string("forbidden") : std::string("something else");
    }),
        "forbidden");
    ASSERT_EQ(::chmod(secret.path().c_str(), 0755), 0);
}

TEST_F(DirectoryListingTest, AFolderThatMayBeReadButNotEnteredShowsItsNames)
{
    auto const secret = folder.folder("secret");
    folder.link("secret/link", "/");
    ASSERT_EQ(::chmod(folder.url().path().c_str(), 0755), 0);
    ASSERT_EQ(::chmod(secret.path().c_str(), 0744), 0);
    EXPECT_EQ(askedWithoutPrivileges([&] {
        auto const found = files.contentsOfDirectory(secret,
            ResourceKey::isAliasFile | ResourceKey::contentModificationDate | ResourceKey::aliasTargetIsDirectory,
            HiddenItems::skipped);
        if (!found || found.value().size() != 1)
            return std::string("not one item");
        auto const& values = found.value()[0].values;
        return std::string(values.isAliasFile.value_or(false) ? "alias" : "no alias")
            + (values.contentModificationDate ? ", dated" : ", undated")
            + (values.aliasTargetIsDirectory ? ", target known" : ", target unknown");
    }),
        "alias, undated, target unknown");
    ASSERT_EQ(::chmod(secret.path().c_str(), 0755), 0);
}

}
}
