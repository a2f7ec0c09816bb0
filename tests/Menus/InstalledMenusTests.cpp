#include "Fakes/DiskTest.h"
#include "Fakes/TestPlatform.h"
#include "Menus/AllAppsMenuBuilder.h"
#include "Menus/PrefPanesMenuBuilder.h"
#include "Models/MenuNode.h"

#include <algorithm>
#include <any>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

using Shown = std::vector<std::string>;
constexpr auto emptyEntry = "[(Empty — drag items into this folder)]";
FileURL const applications("/Applications");

/// Disks with folders of applications and of preference panes as the test lists them.
class InstalledMenuTest : public PlatformTest {
protected:
    void SetUp() override
    {
        desktop.fileManager.home = FileURL("/home/u");
        desktop.fileManager.listings[applications];
        desktop.fileManager.listings[FileURL("/Library/PreferencePanes")];
        desktop.fileManager.listings[FileURL("/home/u/Library/PreferencePanes")];
    }

    void add(std::string const& path, std::optional<bool> isDirectory = true)
    {
        FileURL const url(path);
        ResourceValues values;
        values.isDirectory = isDirectory;
        desktop.fileManager.listings[url.deletingLastPathComponent()].push_back({ url, values });
        if (isDirectory.value_or(false))
            desktop.fileManager.listings[url];
    }

    Shown open(std::shared_ptr<MWMenu> const& menu)
    {
        desktop.menus.popUp(menu, nullptr);
        return desktop.menus.shown();
    }

    Shown urlsOfEntries()
    {
        Shown paths;
        for (auto const& item : desktop.menus.menu()->items())
            paths.push_back(std::any_cast<MenuNode>(item->representedObject).kind.url()->path());
        return paths;
    }
};

class AllApplicationsTest : public InstalledMenuTest {
protected:
    Shown open() { return InstalledMenuTest::open(AllAppsMenuBuilder::build()); }
    bool wasListed(FileURL const& folder)
    {
        auto const& listed = desktop.fileManager.listed;
        return std::find(listed.begin(), listed.end(), folder) != listed.end();
    }
};

TEST_F(AllApplicationsTest, ItIsTitledAndMadeEmpty)
{
    auto const menu = AllAppsMenuBuilder::build();
    EXPECT_EQ(menu->title, "All Applications");
    EXPECT_TRUE(menu->items().empty());
    EXPECT_TRUE(desktop.fileManager.listed.empty());
}

TEST_F(AllApplicationsTest, ApplicationsAreFoundDownToTwoFoldersBelow)
{
    add("/Applications/Top.app");
    add("/Applications/Utilities");
    add("/Applications/Utilities/Tool.app");
    add("/Applications/A");
    add("/Applications/A/B");
    add("/Applications/A/B/Deep.app");
    add("/Applications/A/B/C");
    add("/Applications/A/B/C/Too deep.app");
    EXPECT_EQ(open(), (Shown { "Deep", "Tool", "Top" }));
    EXPECT_FALSE(wasListed(FileURL("/Applications/A/B/C")));
}

TEST_F(AllApplicationsTest, CollectedApplicationsKeepTheListingsOrder)
{
    add("/Applications/Z.app");
    add("/Applications/Folder");
    add("/Applications/A.app");
    add("/Applications/Folder/M.app");
    EXPECT_EQ(AllAppsMenuBuilder::collectApps(applications, 0),
        (std::vector {
            FileURL("/Applications/Z.app"), FileURL("/Applications/Folder/M.app"), FileURL("/Applications/A.app") }));
    EXPECT_TRUE(AllAppsMenuBuilder::collectApps(applications, 3).empty());
    EXPECT_EQ(AllAppsMenuBuilder::collectApps(applications, 2),
        (std::vector { FileURL("/Applications/Z.app"), FileURL("/Applications/A.app") }));
}

TEST_F(AllApplicationsTest, AnApplicationIsNeverSearchedInside)
{
    add("/Applications/Suite.app");
    add("/Applications/Suite.app/Nested.app");
    EXPECT_EQ(open(), (Shown { "Suite" }));
    EXPECT_FALSE(wasListed(FileURL("/Applications/Suite.app")));
}

TEST_F(AllApplicationsTest, TheExtensionIsToldByItsExactCase)
{
    add("/Applications/Tool.APP");
    add("/Applications/Tool.APP/Inner.app");
    add("/Applications/File.app", false);
    add("/Applications/notes.txt", false);
    EXPECT_EQ(open(), (Shown { "File", "Inner" }));
}

TEST_F(AllApplicationsTest, WhatCannotBeReadIsSkipped)
{
    add("/Applications/Unknown", std::nullopt);
    add("/Applications/Locked");
    desktop.fileManager.unreadable.insert(FileURL("/Applications/Locked"));
    EXPECT_EQ(open(), Shown { emptyEntry });
    EXPECT_FALSE(wasListed(FileURL("/Applications/Unknown")));
    desktop.fileManager.unreadable.insert(applications);
    EXPECT_EQ(open(), Shown { emptyEntry });
    EXPECT_TRUE(desktop.log.lines().empty());
}

TEST_F(AllApplicationsTest, HiddenItemsAreLeftOut)
{
    open();
    EXPECT_EQ(desktop.fileManager.hiddenAskedFor, std::vector { HiddenItems::skipped });
}

TEST_F(AllApplicationsTest, NoApplicationsShowThePlaceholderUnlessTheUserDoesNotWantIt)
{
    EXPECT_EQ(open(), Shown { emptyEntry });
    desktop.defaults.set("ignoreEmptyItemsFolder", true);
    EXPECT_EQ(open(), Shown {});
}

TEST_F(AllApplicationsTest, TitlesKeepTheExtensionOnlyWhenTheStoreSaysFalse)
{
    add("/Applications/Safari.app");
    EXPECT_EQ(open(), (Shown { "Safari" }));
    for (DefaultsValue const& value : { DefaultsValue(true), DefaultsValue(0.0), DefaultsValue("false") }) {
        desktop.defaults.set("tossDotAppExtension", value);
        EXPECT_EQ(open(), (Shown { "Safari" }));
    }
    desktop.defaults.set("tossDotAppExtension", false);
    EXPECT_EQ(open(), (Shown { "Safari.app" }));
}

TEST_F(AllApplicationsTest, NamesSortByTheUsersOrder)
{
    for (auto const* name : { "App 10", "beta", "app 9", "Alpha" })
        add("/Applications/" + std::string(name) + ".app");
    EXPECT_EQ(open(), (Shown { "Alpha", "app 9", "App 10", "beta" }));
}

TEST_F(AllApplicationsTest, TwoOfOneNameStandNextToEachOtherInTheListingsOrder)
{
    add("/Applications/Z");
    add("/Applications/Z/Tool.app");
    add("/Applications/Tool.app");
    add("/Applications/Other.app");
    EXPECT_EQ(open(), (Shown { "Other", "Tool", "Tool" }));
    EXPECT_EQ(
        urlsOfEntries(), (Shown { "/Applications/Other.app", "/Applications/Z/Tool.app", "/Applications/Tool.app" }));
}

TEST_F(AllApplicationsTest, TheListIsReadAnewEachTime)
{
    auto const menu = AllAppsMenuBuilder::build();
    EXPECT_EQ(InstalledMenuTest::open(menu), Shown { emptyEntry });
    add("/Applications/Late.app");
    EXPECT_EQ(InstalledMenuTest::open(menu), (Shown { "Late" }));
}

TEST_F(AllApplicationsTest, WhatTheDesktopAddsIsSortedInByItsLocalizedName)
{
    add("/Applications/Mail.app");
    desktop.workspace.addedApplications = { { FileURL("/usr/share/applications/a.desktop"), "Zoom" },
        { FileURL("/usr/share/applications/z.desktop"), "calculator" } };
    EXPECT_EQ(open(), (Shown { "calculator", "Mail", "Zoom" }));
}

TEST_F(AllApplicationsTest, WhatTheDesktopAddsShowsItsFileNameWhereExtensionsAreKept)
{
    desktop.defaults.set("tossDotAppExtension", false);
    add("/Applications/Mail.app");
    desktop.workspace.addedApplications = { { FileURL("/usr/share/applications/a.desktop"), "Zoom" },
        { FileURL("/usr/share/applications/z.desktop"), "Calculator" } };
    EXPECT_EQ(open(), (Shown { "z.desktop", "Mail.app", "a.desktop" }));
}

TEST_F(AllApplicationsTest, TwoAddedOfOneNameAreBothListed)
{
    desktop.workspace.addedApplications
        = { { FileURL("/s/b.desktop"), "Terminal" }, { FileURL("/s/a.desktop"), "Terminal" } };
    EXPECT_EQ(open(), (Shown { "Terminal", "Terminal" }));
    EXPECT_EQ(urlsOfEntries(), (Shown { "/s/b.desktop", "/s/a.desktop" }));
}

TEST_F(AllApplicationsTest, ChoosingOneOpensIt)
{
    add("/Applications/Mail.app");
    open();
    desktop.menus.choose("Mail");
    EXPECT_EQ(desktop.workspace.opened, std::vector { FileURL("/Applications/Mail.app") });
}

class CollectedApplicationsTest : public DiskTest { };

TEST_F(CollectedApplicationsTest, RealFoldersAreSearchedAndHiddenOnesAreNot)
{
    folder.folder("Utilities/Deeper/Tool.app/Inside.app");
    folder.folder("Utilities/.hidden/No.app");
    folder.file("Utilities/Program.app");
    folder.folder("Utilities/Deeper/Deepest/Not this.app");
    auto found = AllAppsMenuBuilder::collectApps(folder.url(), 0);
    std::sort(found.begin(), found.end());
    EXPECT_EQ(found, (std::vector { folder / "Utilities/Deeper/Tool.app", folder / "Utilities/Program.app" }));
}

TEST_F(InstalledMenuTest, RefreshingDoesNothingOnceTheMenuIsGone)
{
    for (auto const build : { AllAppsMenuBuilder::build, PrefPanesMenuBuilder::build }) {
        auto menu = build();
        auto const refresh = menu->refresh;
        menu.reset();
        refresh();
    }
    EXPECT_TRUE(desktop.fileManager.listed.empty());
}

class PreferencePanesMenuTest : public InstalledMenuTest {
protected:
    Shown open() { return InstalledMenuTest::open(PrefPanesMenuBuilder::build()); }
};

TEST_F(PreferencePanesMenuTest, ItIsTitledAndMadeEmpty)
{
    auto const menu = PrefPanesMenuBuilder::build();
    EXPECT_EQ(menu->title, "Preference Panes");
    EXPECT_TRUE(menu->items().empty());
}

TEST_F(PreferencePanesMenuTest, NoPanesShowThePlaceholder)
{
    EXPECT_EQ(open(), Shown { emptyEntry });
}

TEST_F(PreferencePanesMenuTest, AnEntryIsTitledWithoutItsExtensionAndOpensThePane)
{
    add("/Library/PreferencePanes/Foo.prefPane");
    EXPECT_EQ(open(), (Shown { "Foo" }));
    desktop.defaults.set("tossDotAppExtension", false);
    EXPECT_EQ(open(), (Shown { "Foo" }));
    desktop.menus.choose("Foo");
    EXPECT_EQ(desktop.workspace.opened, std::vector { FileURL("/Library/PreferencePanes/Foo.prefPane") });
}

TEST_F(PreferencePanesMenuTest, TheSamePaneOfSystemAndUserIsListedTwiceTheSystemsFirst)
{
    add("/home/u/Library/PreferencePanes/Foo.prefPane");
    add("/Library/PreferencePanes/Foo.prefPane");
    EXPECT_EQ(open(), (Shown { "Foo", "Foo" }));
    EXPECT_EQ(urlsOfEntries(),
        (Shown { "/Library/PreferencePanes/Foo.prefPane", "/home/u/Library/PreferencePanes/Foo.prefPane" }));
}

TEST_F(PreferencePanesMenuTest, APaneInstalledMeanwhileIsListedAtTheNextOpening)
{
    auto const menu = PrefPanesMenuBuilder::build();
    EXPECT_EQ(InstalledMenuTest::open(menu), Shown { emptyEntry });
    add("/Library/PreferencePanes/Late.prefPane");
    EXPECT_EQ(InstalledMenuTest::open(menu), (Shown { "Late" }));
}

TEST_F(PreferencePanesMenuTest, WhatTheDesktopAddsIsSortedInByItsLocalizedName)
{
    add("/Library/PreferencePanes/Mouse.prefPane");
    desktop.workspace.addedPreferencePanes
        = { { FileURL("/s/1.desktop"), "Sound" }, { FileURL("/s/2.desktop"), "display" } };
    desktop.defaults.set("tossDotAppExtension", false);
    EXPECT_EQ(open(), (Shown { "display", "Mouse", "Sound" }));
}

}
}
