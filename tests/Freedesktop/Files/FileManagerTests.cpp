#include "Freedesktop/Files/FreedesktopFileManager.h"

#include "AsOtherUser.h"
#include "Fakes/TemporaryFolder.h"

#include <algorithm>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace marrowick {
namespace {

class FileManagerTest : public testing::Test {
protected:
    std::optional<ErrorKind> creationFailure(FileURL const& url) const
    {
        auto const result = files.createDirectory(url);
        return result ? std::nullopt : std::optional(result.error().kind);
    }
    std::string resolved(FileURL const& url) const
    {
        auto const result = files.resolvingAlias(url);
        return result ? result.value().path() : "unresolved";
    }

    TemporaryFolder folder;
    FreedesktopFileManager files;
};

TEST_F(FileManagerTest, ExistenceFollowsLinks)
{
    folder.file("file");
    folder.link("link", "file");
    folder.link("dangling", "missing");
    folder.link("loop", "loop");
    EXPECT_TRUE(files.fileExists(folder / "file"));
    EXPECT_TRUE(files.fileExists(folder.url()));
    EXPECT_TRUE(files.fileExists(folder / "link"));
    EXPECT_TRUE(files.fileExists(folder.file("broken \xFF\n")));
    EXPECT_FALSE(files.fileExists(folder / "dangling"));
    EXPECT_FALSE(files.fileExists(folder / "loop"));
    EXPECT_FALSE(files.fileExists(folder / "missing"));
    EXPECT_FALSE(files.fileExists(FileURL()));
    EXPECT_FALSE(files.fileExists(FileURL((folder / "file").path() + std::string("\0x", 2))));
}

TEST_F(FileManagerTest, IdentityTellsItemsApartAndLinksTogether)
{
    auto const file = folder.file("file", "12345");
    ASSERT_EQ(::link(file.path().c_str(), (folder / "hard").path().c_str()), 0);
    folder.link("soft", "file");
    folder.file("other", "12345");
    auto const identity = files.identity(file);
    ASSERT_TRUE(identity.has_value());
    EXPECT_EQ(identity->size, 5U);
    EXPECT_TRUE(identity->isSameItem(*files.identity(folder / "hard")));
    EXPECT_TRUE(identity->isSameItem(*files.identity(folder / "soft")));
    EXPECT_FALSE(identity->isSameItem(*files.identity(folder / "other")));
    EXPECT_FALSE(identity->isSameItem(*files.identity(FileURL("/proc"))));
    EXPECT_EQ(files.identity(folder / "missing"), std::nullopt);
    EXPECT_EQ(files.identity(folder.link("dangling", "missing")), std::nullopt);
}

TEST_F(FileManagerTest, IdentityHoldsTheTargetsTimeToTheNanosecond)
{
    auto const file = folder.file("file");
    folder.link("link", "file");
    timespec const times[] = { {}, { .tv_sec = 1'700'000'000, .tv_nsec = 987'654'321 } };
    ASSERT_EQ(::utimensat(AT_FDCWD, file.path().c_str(), times, 0), 0);
    EXPECT_EQ(files.identity(folder / "link")->modified.time_since_epoch().count(), 1'700'000'000'987'654'321);
}

TEST_F(FileManagerTest, CreatesADirectoryWithAllAboveIt)
{
    auto const previous = ::umask(027);
    EXPECT_EQ(creationFailure(folder / "a/b\xFF/c"), std::nullopt);
    ::umask(previous);
    struct stat status { };
    ASSERT_EQ(::stat((folder / "a/b\xFF/c").path().c_str(), &status), 0);
    EXPECT_TRUE(S_ISDIR(status.st_mode));
    EXPECT_EQ(status.st_mode & 0777U, 0750U);
    EXPECT_EQ(creationFailure(folder / "a/b\xFF/c"), std::nullopt) << "a second time";
    EXPECT_EQ(creationFailure(FileURL("/")), std::nullopt);
}

TEST_F(FileManagerTest, CreatesBelowALinkToADirectory)
{
    folder.folder("real");
    folder.link("link", "real");
    EXPECT_EQ(creationFailure(folder / "link"), std::nullopt);
    EXPECT_EQ(creationFailure(folder / "link/inside"), std::nullopt);
    EXPECT_TRUE(files.fileExists(folder / "real/inside"));
}

TEST_F(FileManagerTest, AnItemThatStandsInTheWayOfADirectoryIsLeftAlone)
{
    folder.file("file", "content");
    folder.link("dangling", "missing");
    EXPECT_EQ(creationFailure(folder / "file"), ErrorKind::alreadyExists);
    EXPECT_EQ(creationFailure(folder / "file/below"), ErrorKind::alreadyExists);
    EXPECT_EQ(creationFailure(folder / "file/below/more"), ErrorKind::alreadyExists);
    EXPECT_EQ(creationFailure(folder / "dangling"), ErrorKind::alreadyExists);
    EXPECT_FALSE(files.fileExists(folder / "missing"));
    EXPECT_EQ(creationFailure(FileURL()), ErrorKind::notFound);
    EXPECT_EQ(creationFailure(FileURL(folder.url().path() + std::string("/x\0y", 4))), ErrorKind::notFound);
    EXPECT_FALSE(files.fileExists(folder / "x"));
}

TEST_F(FileManagerTest, ADirectoryThatMayNotBeMadeSaysSo)
{
    auto const closed = folder.folder("closed");
    ASSERT_EQ(::chmod(folder.url().path().c_str(), 0755), 0);
    ASSERT_EQ(::chmod(closed.path().c_str(), 0555), 0);
    EXPECT_EQ(askedWithoutPrivileges([&] {
        bool const isForbidden = creationFailure(folder / "closed/a/b") == ErrorKind::noPermission;
        return std::string(isForbidden ? "forbidden" : "something else")
            + (creationFailure(closed) ? ", existing one fails" : ", existing one is fine");
    }),
        "forbidden, existing one is fine");
}

TEST_F(FileManagerTest, RemovesAFileOrALinkAndNothingElse)
{
    auto const removal = [&](FileURL const& url) -> std::optional<ErrorKind> {
        auto const result = files.removeFile(url);
        return result ? std::nullopt : std::optional(result.error().kind);
    };
    folder.file("kept", "kept");
    folder.folder("directory");
    EXPECT_EQ(removal(folder.file("broken \xFF\n")), std::nullopt);
    EXPECT_EQ(removal(folder.fifo("fifo")), std::nullopt);
    EXPECT_EQ(removal(folder.link("to file", "kept")), std::nullopt);
    EXPECT_EQ(removal(folder.link("to folder", "directory")), std::nullopt);
    EXPECT_EQ(removal(folder.link("dangling", "missing")), std::nullopt);
    EXPECT_NE(removal(folder / "directory"), std::nullopt);
    EXPECT_NE(removal(FileURL((folder / "directory").path(), true)), std::nullopt);
    EXPECT_EQ(removal(folder / "missing"), ErrorKind::notFound);
    EXPECT_EQ(removal(FileURL()), ErrorKind::notFound);
    EXPECT_EQ(removal(FileURL((folder / "kept").path() + std::string("\0x", 2))), ErrorKind::notFound);
    EXPECT_EQ(folder.names(""), (std::vector<std::string> { "directory", "kept" }));
    EXPECT_EQ(folder.content("kept"), "kept");
}

TEST_F(FileManagerTest, AFileThatMayNotBeRemovedStays)
{
    folder.folder("closed");
    folder.file("closed/file");
    ASSERT_EQ(::chmod(folder.url().path().c_str(), 0755), 0);
    ASSERT_EQ(::chmod((folder / "closed").path().c_str(), 0555), 0);
    EXPECT_EQ(askedWithoutPrivileges([&]() -> std::string {
        auto const result = files.removeFile(folder / "closed/file");
        return !result && result.error().kind == ErrorKind::noPermission ? "forbidden" : "something else";
    }),
        "forbidden");
    EXPECT_TRUE(files.fileExists(folder / "closed/file"));
    ASSERT_EQ(::chmod((folder / "closed").path().c_str(), 0755), 0);
}

TEST_F(FileManagerTest, AnAliasResolvesToAPathWithoutLinks)
{
    auto const base = resolved(folder.url());
    folder.folder("folder");
    folder.file("folder/file\xFF");
    folder.link("to folder", "folder");
    folder.link("to file", (folder / "to folder/file\xFF").path());
    folder.link("to link", "to file");
    EXPECT_EQ(resolved(folder / "to folder"), base + "/folder");
    EXPECT_EQ(resolved(folder / "to link"), base + "/folder/file\xFF");
    EXPECT_EQ(resolved(folder / "to folder/file\xFF"), base + "/folder/file\xFF");
    EXPECT_EQ(resolved(folder / "folder"), base + "/folder") << "no alias";
    EXPECT_EQ(resolved(FileURL("/")), "/");
}

TEST_F(FileManagerTest, AnAliasThatLeadsNowhereDoesNotResolve)
{
    EXPECT_EQ(resolved(folder.link("dangling", "missing")), "unresolved");
    EXPECT_EQ(files.resolvingAlias(folder / "dangling").error().kind, ErrorKind::notFound);
    folder.link("a", "b");
    folder.link("b", "a");
    EXPECT_EQ(resolved(folder / "a"), "unresolved");
    EXPECT_EQ(resolved(folder / "missing"), "unresolved");
    EXPECT_EQ(resolved(FileURL()), "unresolved");
}

TEST_F(FileManagerTest, TheRootIsAmongTheVolumes)
{
    auto const volumes = files.mountedVolumes();
    ASSERT_TRUE(volumes.has_value());
    EXPECT_EQ(std::count(volumes->begin(), volumes->end(), FileURL("/")), 1);
    for (auto const& url : *volumes) {
        EXPECT_TRUE(url.hasDirectoryPath());
        EXPECT_FALSE(url.path().starts_with("/proc") || url.path().starts_with("/sys")) << url.path();
    }
}

}
}
