#include "Fakes/DiskTest.h"
#include "Menus/DesktopMenuBuilder.h"
#include "Models/MenuNode.h"

#include <any>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

using Shown = std::vector<std::string>;

class DesktopMenuTest : public DiskTest {
protected:
    DesktopMenuTest()
    {
        folder.folder("Desktop");
        folder.folder("media/Volume 10");
        folder.folder("media/volume 9");
        desktop.fileManager.standardDirectories[StandardDirectory::desktop] = { folder / "Desktop" };
        desktop.fileManager.volumes = { folder / "media/Volume 10", FileURL("/"), folder / "media/volume 9" };
    }

    Shown open()
    {
        desktop.menus.popUp(DesktopMenuBuilder::build(), nullptr);
        return desktop.menus.shown();
    }
};

using DesktopMenuDeathTest = DesktopMenuTest;

TEST_F(DesktopMenuTest, ItIsTitledAndMadeEmpty)
{
    auto const menu = DesktopMenuBuilder::build();
    EXPECT_EQ(menu->title, "Desktop");
    EXPECT_TRUE(menu->items().empty());
}

TEST_F(DesktopMenuTest, VolumesComeFirstInTheirOrderThenALineThenTheDesktop)
{
    folder.file("Desktop/b.txt");
    folder.folder("Desktop/a");
    EXPECT_EQ(open(), (Shown { "/", "volume 9", "Volume 10", "---", "a", "b.txt" }));
}

TEST_F(DesktopMenuTest, TheStartupVolumeIsTitledWithASlash)
{
    desktop.fileManager.volumes = { FileURL("/") };
    EXPECT_EQ(open(), (Shown { "/", "---" }));
}

TEST_F(DesktopMenuTest, AnEmptyDesktopLeavesTheLineAtTheEnd)
{
    EXPECT_EQ(open(), (Shown { "/", "volume 9", "Volume 10", "---" }));
}

TEST_F(DesktopMenuTest, WithControlHeldItListsVolumesOnly)
{
    folder.file("Desktop/b.txt");
    desktop.events.held = modifier::control;
    EXPECT_EQ(open(), (Shown { "/", "volume 9", "Volume 10" }));
    desktop.events.held = modifier::control | modifier::shift;
    EXPECT_EQ(open(), (Shown { "/", "volume 9", "Volume 10" }));
    desktop.events.held = modifier::shift | modifier::option | modifier::command;
    EXPECT_EQ(open(), (Shown { "/", "volume 9", "Volume 10", "---", "b.txt" }));
}

TEST_F(DesktopMenuTest, WithControlHeldTheDesktopFolderIsNotEvenAskedFor)
{
    desktop.fileManager.standardDirectories[StandardDirectory::desktop] = {};
    desktop.events.held = modifier::control;
    EXPECT_EQ(open(), (Shown { "/", "volume 9", "Volume 10" }));
}

TEST_F(DesktopMenuTest, AVolumeIsAFolderWithASubmenuOfItsOwn)
{
    folder.file("media/volume 9/inside.txt");
    open();
    auto const node = std::any_cast<MenuNode>(desktop.menus.item("volume 9")->representedObject);
    EXPECT_EQ(node.kind, MenuNodeKind::folder(folder / "media/volume 9"));
    EXPECT_EQ(node.codes, SuffixCodes {});
    EXPECT_FALSE(node.appConditional);
    desktop.menus.openSubmenu("volume 9");
    EXPECT_EQ(desktop.menus.shown(), (Shown { "inside.txt" }));
}

TEST_F(DesktopMenuTest, AVolumesNameCarriesNoCodes)
{
    folder.folder("media/Backup---X");
    desktop.fileManager.volumes = { folder / "media/Backup---X" };
    EXPECT_EQ(open(), (Shown { "Backup---X", "---" }));
    EXPECT_TRUE(desktop.menus.item("Backup---X")->submenu());
}

TEST_F(DesktopMenuTest, AVolumeIsListedOnlyWhenItsSubmenuOpens)
{
    open();
    EXPECT_EQ(desktop.fileManager.listed, std::vector { folder / "Desktop" });
    desktop.menus.openSubmenu("Volume 10");
    EXPECT_EQ(desktop.fileManager.listed, (std::vector { folder / "Desktop", folder / "media/Volume 10" }));
}

TEST_F(DesktopMenuTest, DesktopItemsAreReadLikeThoseOfTheItemsFolder)
{
    folder.file("Desktop/with files---f");
    folder.file("Desktop/02)second.txt");
    folder.file("Desktop/03)first.txt");
    folder.folder("Desktop/plain---X");
    folder.file("Desktop/.hidden");
    desktop.fileManager.volumes = std::vector<FileURL> {};
    EXPECT_EQ(open(), (Shown { "---", "second.txt", "first.txt", "plain" }));
    EXPECT_FALSE(desktop.menus.item("plain")->submenu());
}

TEST_F(DesktopMenuTest, DesktopItemsFollowTheSituationOfTheOpening)
{
    folder.file("Desktop/with files---f");
    folder.file("Desktop/without files---N");
    desktop.fileManager.volumes = std::vector<FileURL> {};
    EXPECT_EQ(open(), (Shown { "---", "without files" }));
    desktop.finder.selectTwoFiles();
    EXPECT_EQ(open(), (Shown { "---", "with files" }));
}

TEST_F(DesktopMenuTest, RefreshingDoesNothingOnceTheMenuIsGone)
{
    auto menu = DesktopMenuBuilder::build();
    auto const refresh = menu->refresh;
    menu.reset();
    refresh();
    EXPECT_TRUE(desktop.fileManager.listed.empty());
}

TEST_F(DesktopMenuTest, UnknownVolumesAreNone)
{
    desktop.fileManager.volumes = std::nullopt;
    desktop.events.held = modifier::control;
    EXPECT_EQ(open(), (Shown { "[(Empty — drag items into this folder)]" }));
}

TEST_F(DesktopMenuTest, AVolumeMountedMeanwhileIsListedAtTheNextOpening)
{
    auto const menu = DesktopMenuBuilder::build();
    desktop.fileManager.volumes = { FileURL("/") };
    desktop.menus.popUp(menu, nullptr);
    EXPECT_EQ(desktop.menus.shown(), (Shown { "/", "---" }));
    desktop.fileManager.volumes = { FileURL("/"), folder / "media/Volume 10" };
    desktop.menus.popUp(menu, nullptr);
    EXPECT_EQ(desktop.menus.shown(), (Shown { "/", "Volume 10", "---" }));
}

TEST_F(DesktopMenuDeathTest, WithoutADesktopFolderTheProcessStops)
{
    desktop.fileManager.standardDirectories[StandardDirectory::desktop] = {};
    desktop.log.echoToStandardError();
    EXPECT_DEATH(open(), "no Desktop folder");
}

}
}
