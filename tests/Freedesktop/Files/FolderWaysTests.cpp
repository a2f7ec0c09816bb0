#include "Freedesktop/Files/FolderWays.h"

#include "Fakes/TemporaryFolder.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace marrowick {
namespace {

/// A folder called "menu", beside others of which some are said to be volumes.
class FolderWaysTest : public testing::Test {
protected:
    FolderWaysTest()
    {
        for (auto const* name : { "menu/nas", "menu/inner", "server/host/deep", "servers", "other" })
            folder.folder(name);
    }

    std::string path(std::string const& name) const { return name == "." ? top : top + '/' + name; }

    FolderWays ways(std::vector<std::string> const& volumes, std::string const& place = "menu") const
    {
        auto paths = std::make_shared<VolumePaths>();
        for (auto const& volume : volumes)
            paths->push_back(path(volume));
        return { path(place), std::move(paths) };
    }

    TemporaryFolder folder;
    std::string top = std::filesystem::canonical(folder.url().path());
};

TEST_F(FolderWaysTest, LinksAreFollowedUpToTheVolume)
{
    folder.link("other/to server", "../server");
    folder.link("other/twice", "to server");
    folder.link("other/absolute", path("server"));
    folder.link("other/up", "..");
    folder.link("other/back", "to server/..");
    folder.link("menu/loop", "loop");
    folder.file("file");
    struct Row {
        std::string target;
        bool entersServer;
    };
    Row const rows[] = {
        { "../server", true },
        { path("server"), true },
        { "../server/", true },
        { "../server/host", true },
        { "../server/missing/as well", true },
        { "../server/../other", true },
        { "../other/../server", true },
        { ".././/server/.", true },
        { path("other//../server"), true },
        { "../other/to server", true },
        { "../other/twice/host", true },
        { "../other/absolute", true },
        { path("other/twice"), true },
        { "../other/up/server", true },
        { "../other/up/other/up/server", true },
        { "../other/back/other", true },
        { "../servers", false },
        { "../other/up/servers", false },
        { "../missing", false },
        { "../file", false },
        { "../file/server", false },
        { "inner", false },
        { ".", false },
        { "..", false },
        { "/", false },
        { "loop", false },
        { path("other"), false },
        { std::string(3000, 'x'), false },
    };
    for (auto const& row : rows) {
        folder.link("menu/link", row.target);
        auto const expected = row.entersServer ? std::optional(path("server")) : std::nullopt;
        EXPECT_EQ(ways({ "server" }).volumeBehind("link"), expected) << row.target;
        EXPECT_EQ(ways({ "server" }).volumeAt("link"), std::nullopt) << row.target;
        folder.remove("menu/link");
    }
}

TEST_F(FolderWaysTest, AMountPointInTheFolderIsAVolume)
{
    auto const menu = ways({ "menu/nas", "server" });
    EXPECT_EQ(menu.volumeAt("nas"), path("menu/nas"));
    EXPECT_EQ(menu.volumeBehind("nas"), path("menu/nas"));
    EXPECT_EQ(menu.volumeAt("na"), std::nullopt);
    EXPECT_EQ(menu.volumeAt("inner"), std::nullopt);
    EXPECT_EQ(ways({ "menu/nas/deep" }).volumeAt("nas"), std::nullopt);
    EXPECT_EQ(ways({ "menu/nas" }, ".").volumeAt("menu"), std::nullopt);
}

TEST_F(FolderWaysTest, VolumesInWhichTheFolderLiesAreTrusted)
{
    folder.link("menu/near", "../other");
    folder.link("menu/absolute", path("other"));
    folder.link("menu/far", "../server/host");
    auto const menu = ways({ "menu", ".", "server" });
    EXPECT_EQ(menu.volumeBehind("near"), std::nullopt);
    EXPECT_EQ(menu.volumeBehind("absolute"), std::nullopt);
    EXPECT_EQ(menu.volumeBehind("inner"), std::nullopt);
    EXPECT_EQ(menu.volumeBehind("far"), path("server"));
}

TEST_F(FolderWaysTest, AVolumeInAVolumeIsToldApart)
{
    folder.link("menu/host", "../server/host/deep");
    folder.link("menu/server", "../server/other");
    auto const menu = ways({ "server", "server/host" });
    EXPECT_EQ(menu.volumeBehind("host"), path("server/host"));
    EXPECT_EQ(menu.volumeBehind("server"), path("server"));
}

TEST_F(FolderWaysTest, TheFolderBelowHasItsOwnWays)
{
    folder.link("menu/inner/up", "../nas");
    auto const inner = ways({ "menu/nas", "menu/inner/volume" }).below("inner");
    EXPECT_EQ(inner.pathOf("x"), path("menu/inner/x"));
    EXPECT_EQ(inner.volumeAt("volume"), path("menu/inner/volume"));
    EXPECT_EQ(inner.volumeAt("nas"), std::nullopt);
    EXPECT_EQ(inner.volumeBehind("up"), path("menu/nas"));
}

TEST_F(FolderWaysTest, WithoutVolumesNothingIsDoubtful)
{
    folder.link("menu/link", "../server");
    FolderWays const menu(path("menu"), nullptr);
    EXPECT_TRUE(menu.areHarmless());
    EXPECT_TRUE(menu.below("inner").areHarmless());
    EXPECT_EQ(menu.volumeAt("nas"), std::nullopt);
    EXPECT_EQ(menu.volumeBehind("link"), std::nullopt);
    EXPECT_FALSE(ways({ "server" }).areHarmless());
}

TEST_F(FolderWaysTest, VolumesDirectlyInTheRootAreSeenFromThere)
{
    FolderWays const root("/", std::make_shared<VolumePaths const>(VolumePaths { "/marrowick-volume" }));
    EXPECT_EQ(root.volumeAt("marrowick-volume"), "/marrowick-volume");
    EXPECT_EQ(root.volumeAt("tmp"), std::nullopt);
    EXPECT_EQ(root.pathOf("tmp"), "/tmp");
}

}
}
