#include "Fakes/TemporaryFolder.h"
#include "Freedesktop/Session/InstalledApplications.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace marrowick {

namespace {

using testing::IsEmpty;
using testing::UnorderedElementsAre;

/// The desktop library remembers which desktop it runs on, so all tests of a program run on one.
class TestedDesktop : public testing::Environment {
public:
    void SetUp() override { setenv("XDG_CURRENT_DESKTOP", "Tested:Kin", 1); }
};

auto const* const testedDesktop = testing::AddGlobalTestEnvironment(new TestedDesktop);

/// Two applications folders, the user's before the system's.
class InstalledApplicationsTest : public testing::Test {
protected:
    InstalledApplicationsTest()
    {
        std::filesystem::create_directories(user_);
        std::filesystem::create_directories(system_);
    }

    static std::string write(std::string const& path, std::string const& content)
    {
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        std::ofstream(path, std::ios::binary) << content;
        return path;
    }

    std::string install(std::string const& id, std::string const& more = {}, std::string const& name = {})
    {
        return write(system_ + "/" + id + ".desktop", entry(name.empty() ? id : name, more));
    }

    static std::string entry(std::string const& name, std::string const& more)
    {
        return "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=true\n" + more;
    }

    std::vector<std::string> names() { return namesOf(installed_.applications()); }
    std::vector<std::string> settingsNames() { return namesOf(installed_.settings()); }

    static std::vector<std::string> namesOf(std::vector<InstalledItem> const& items)
    {
        std::vector<std::string> names;
        for (auto const& item : items)
            names.push_back(item.localizedName);
        return names;
    }

    TemporaryFolder folder_;
    std::string user_ = folder_.url().path() + "/user/applications";
    std::string system_ = folder_.url().path() + "/system/applications";
    DesktopEntries entries_ { { user_, system_ } };
    InstalledApplications installed_ { entries_ };
};

struct CategoriesCase {
    std::string_view categories;
    bool areSettings;
};

constexpr CategoriesCase categoriesCases[] {
    { "", false },
    { ";", false },
    { ";;;", false },
    { "Utility;", false },
    { "Settings", true },
    { "Settings;", true },
    { "Utility;GTK;Settings;", true },
    { ";Settings", true },
    { "settings", false },
    { "SettingsMore;", false },
    { "MoreSettings;", false },
    { "DesktopSettings;Qt;", true },
    { "HardwareSettings;", true },
    { "GNOME;GTK;X-GNOME-Settings-Panel;", true },
    { "X-GNOME-Utilities;", false },
    { "XFCE;X-XFCE-SettingsDialog;X-XFCE-HardwareSettings;", true },
    { "Qt;KDE;X-KDE-settings-accessibility;", true },
    { "Qt;KDE;X-KDE-More;", false },
    { "X-MATE-NetworkSettings", true },
    { "LXQt;X-LXQt-SystemSettings", true },
};

}

TEST(SettingsCategoriesTest, OneCategoryOfSettingsIsEnough)
{
    for (auto const& [categories, areSettings] : categoriesCases)
        EXPECT_EQ(areSettingsCategories(categories), areSettings) << categories;
}

TEST_F(InstalledApplicationsTest, ApplicationsHaveTheirFilesAndNames)
{
    EXPECT_THAT(installed_.applications(), IsEmpty());
    auto const path = install("org.example.Editor", {}, "The Editor");
    auto const found = installed_.applications();
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].url, FileURL(path));
    EXPECT_EQ(found[0].localizedName, "The Editor");
    EXPECT_THAT(installed_.settings(), IsEmpty());
}

TEST_F(InstalledApplicationsTest, WhatThisDesktopDoesNotShowIsLeftOut)
{
    install("plain");
    install("no-display", "NoDisplay=true\n");
    install("deleted", "Hidden=true\n");
    install("only-here", "OnlyShowIn=Other;Tested;\n");
    install("only-kin", "OnlyShowIn=Kin;\n");
    install("only-elsewhere", "OnlyShowIn=Other;\n");
    install("not-here", "NotShowIn=Tested;\n");
    install("not-elsewhere", "NotShowIn=Other;\n");
    install("program-is-missing", "TryExec=marrowick-no-such-program\n");
    write(system_ + "/missing.desktop", "[Desktop Entry]\nType=Application\nName=M\nExec=marrowick-no-such-program\n");
    write(system_ + "/link.desktop", "[Desktop Entry]\nType=Link\nName=L\nURL=https://example.org\n");
    write(system_ + "/broken.desktop", "\xff\xfe[[[");
    write(system_ + "/nameless.desktop", "[Desktop Entry]\nType=Application\nExec=true\n");
    auto const found = names();
    for (auto const* id : { "plain", "only-here", "only-kin", "not-elsewhere" })
        EXPECT_THAT(found, testing::Contains(id));
    for (auto const* id : { "no-display", "deleted", "only-elsewhere", "not-here", "program-is-missing", "M", "L" })
        EXPECT_THAT(found, testing::Not(testing::Contains(id)));
}

TEST_F(InstalledApplicationsTest, TheUsersEntryStandsForTheSystems)
{
    install("viewer", {}, "Theirs");
    auto const mine = write(user_ + "/viewer.desktop", entry("Mine", {}));
    auto const found = installed_.applications();
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].url, FileURL(mine));
    EXPECT_EQ(found[0].localizedName, "Mine");
}

TEST_F(InstalledApplicationsTest, TheUserHidesWhatTheSystemShows)
{
    install("viewer");
    install("player");
    write(user_ + "/viewer.desktop", entry("viewer", "Hidden=true\n"));
    write(user_ + "/player.desktop", entry("player", "NoDisplay=true\n"));
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(InstalledApplicationsTest, TwoApplicationsOfOneNameAreBothThere)
{
    install("org.example.One", {}, "Viewer");
    install("org.example.Two", {}, "Viewer");
    EXPECT_THAT(names(), UnorderedElementsAre("Viewer", "Viewer"));
    auto const found = installed_.applications();
    EXPECT_NE(found[0].url, found[1].url);
}

TEST_F(InstalledApplicationsTest, ChangesAreThereAtTheNextQuestion)
{
    auto const path = install("first");
    EXPECT_THAT(names(), UnorderedElementsAre("first"));
    install("second");
    EXPECT_THAT(names(), UnorderedElementsAre("first", "second"));
    install("second", "NoDisplay=true\n");
    EXPECT_THAT(names(), UnorderedElementsAre("first"));
    install("second", "Categories=Settings;\n", "renamed");
    EXPECT_THAT(names(), UnorderedElementsAre("first", "renamed"));
    EXPECT_THAT(settingsNames(), UnorderedElementsAre("renamed"));
    std::filesystem::remove(path);
    EXPECT_THAT(names(), UnorderedElementsAre("renamed"));
    write(user_ + "/deep/below/third.desktop", entry("third", {}));
    EXPECT_THAT(names(), UnorderedElementsAre("renamed", "third"));
}

TEST_F(InstalledApplicationsTest, SettingsAreThoseApplicationsThatAreMarkedSo)
{
    install("editor", "Categories=Utility;\n");
    install("keyboard", "Categories=GTK;Settings;\n");
    install("hidden-panel", "Categories=Settings;\nNoDisplay=true\n");
    install("other-desktops-panel", "Categories=Settings;\nOnlyShowIn=Other;\n");
    EXPECT_THAT(settingsNames(), UnorderedElementsAre("keyboard"));
    EXPECT_THAT(names(), UnorderedElementsAre("editor", "keyboard"));
}

TEST_F(InstalledApplicationsTest, AnApplicationCountsAsSoonAsItsProgramIsThere)
{
    auto const programs = folder_.url().path() + "/programs";
    std::filesystem::create_directories(programs);
    std::string const path = std::getenv("PATH");
    setenv("PATH", (programs + ":" + path).c_str(), 1);
    install("late", "TryExec=marrowick-late-program\n");
    // As it is for most of the time: nothing has changed for a while.
    EXPECT_THAT(names(), IsEmpty());
    usleep(100'000);
    EXPECT_THAT(names(), IsEmpty());

    auto const program = write(programs + "/.part", "#!/bin/sh\n");
    chmod(program.c_str(), 0755);
    std::filesystem::rename(program, programs + "/marrowick-late-program");
    EXPECT_THAT(names(), UnorderedElementsAre("late"));
    std::filesystem::remove(programs + "/marrowick-late-program");
    EXPECT_THAT(names(), IsEmpty());
    setenv("PATH", path.c_str(), 1);
}

TEST_F(InstalledApplicationsTest, NamesAreInTheUsersLanguage)
{
    for (auto const* variable : { "LANGUAGE", "LC_ALL", "LC_MESSAGES" })
        unsetenv(variable);
    setenv("LANG", "de_DE.UTF-8", 1);
    install("editor", "Name[de]=Texte\nName[fr]=Textes\n", "Editor");
    install("viewer", "Name[de]=Betrachter\nX-GNOME-FullName=Picture Viewer\nX-GNOME-FullName[de]=Bildbetrachter\n");
    // By the name that its windows have among the running applications, and not by a longer one.
    EXPECT_THAT(names(), UnorderedElementsAre("Texte", "Betrachter"));
    setenv("LANG", "C.UTF-8", 1);
}

TEST_F(InstalledApplicationsTest, AnEntryOfItsOwnFolderIsOne)
{
    write(system_ + "/kde/viewer.desktop", entry("Viewer", {}));
    EXPECT_THAT(names(), UnorderedElementsAre("Viewer"));
}

}
