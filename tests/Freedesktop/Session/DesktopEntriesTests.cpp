#include "Fakes/TemporaryFolder.h"
#include "Freedesktop/Session/DesktopEntries.h"

#include <glib.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace marrowick {

namespace {

/// Two applications folders, the user's before the system's.
class DesktopEntriesTest : public testing::Test {
protected:
    DesktopEntriesTest()
    {
        std::filesystem::create_directories(user_);
        std::filesystem::create_directories(system_);
    }

    static std::string entry(std::string const& name, std::string const& more = {})
    {
        return "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=true\n" + more;
    }

    static void write(std::string const& path, std::string const& content)
    {
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        std::ofstream(path, std::ios::binary) << content;
    }

    std::string idOf(DesktopEntry const* found) const { return found ? found->id : "none"; }

    TemporaryFolder folder_;
    std::string user_ = folder_.url().path() + "/user/applications";
    std::string system_ = folder_.url().path() + "/system/applications";
    DesktopEntries entries_ { { user_, system_ } };
};

}

TEST_F(DesktopEntriesTest, EntriesAreFoundByIDAndClass)
{
    write(system_ + "/org.example.Editor.desktop", entry("Editor", "StartupWMClass=editor-window\n"));
    entries_.refresh();
    auto const* const found = entries_.withID("org.example.Editor");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->path, system_ + "/org.example.Editor.desktop");
    EXPECT_EQ(entries_.withStartupWMClass("editor-window"), found);
    EXPECT_EQ(entries_.withID("org.example"), nullptr);
    EXPECT_EQ(entries_.withID(""), nullptr);
    EXPECT_EQ(entries_.withStartupWMClass(""), nullptr);
    EXPECT_EQ(entries_.withStartupWMClass("Editor-window"), nullptr);
}

TEST_F(DesktopEntriesTest, SubfoldersArePartOfTheID)
{
    write(system_ + "/kde/tools/viewer.desktop", entry("Viewer"));
    entries_.refresh();
    EXPECT_EQ(idOf(entries_.withID("kde-tools-viewer")), "kde-tools-viewer");
}

TEST_F(DesktopEntriesTest, TheUsersEntryHidesTheSystems)
{
    write(user_ + "/viewer.desktop", entry("Mine"));
    write(system_ + "/viewer.desktop", entry("Theirs", "StartupWMClass=theirs\n"));
    entries_.refresh();
    auto const* const found = entries_.withID("viewer");
    ASSERT_TRUE(found);
    EXPECT_EQ(entries_.localizedName(*found), "Mine");
    EXPECT_EQ(entries_.withStartupWMClass("theirs"), nullptr);
}

TEST_F(DesktopEntriesTest, ADeletedEntryHidesTheSystemsToo)
{
    write(user_ + "/viewer.desktop", entry("Mine", "Hidden=true\n"));
    write(system_ + "/viewer.desktop", entry("Theirs"));
    entries_.refresh();
    EXPECT_EQ(entries_.withID("viewer"), nullptr);
}

TEST_F(DesktopEntriesTest, AVisibleEntryIsPreferredAmongThoseOfOneClass)
{
    write(user_ + "/handler.desktop", entry("Handler", "StartupWMClass=shared\nNoDisplay=true\n"));
    write(system_ + "/main.desktop", entry("Main", "StartupWMClass=shared\n"));
    entries_.refresh();
    EXPECT_EQ(idOf(entries_.withStartupWMClass("shared")), "main");
}

TEST_F(DesktopEntriesTest, OnlyTheEntrysOwnGroupCounts)
{
    write(system_ + "/a.desktop",
        "# comment\n[Desktop Entry]\n Type = Application \nName=A\nExec=true\nStartupWMClass = a b \n"
        "[Desktop Action New]\nStartupWMClass=action\nHidden=true\nType=Other\n");
    write(system_ + "/link.desktop", "[Desktop Entry]\nType=Link\nURL=https://example.org\nStartupWMClass=link\n");
    entries_.refresh();
    EXPECT_EQ(idOf(entries_.withStartupWMClass("a b")), "a");
    EXPECT_EQ(entries_.withStartupWMClass("action"), nullptr);
    EXPECT_EQ(entries_.withStartupWMClass("link"), nullptr);
}

TEST_F(DesktopEntriesTest, NamesAreOfInstalledProgramsOnly)
{
    write(system_ + "/here.desktop", entry("Here"));
    write(system_ + "/gone.desktop", "[Desktop Entry]\nType=Application\nName=Gone\nExec=marrowick-no-such-program\n");
    entries_.refresh();
    EXPECT_EQ(entries_.localizedName(*entries_.withID("here")), "Here");
    EXPECT_EQ(entries_.localizedName(*entries_.withID("gone")), std::nullopt);
}

TEST_F(DesktopEntriesTest, AnExecutableBelongsToItsOnlyVisibleEntry)
{
    write(system_ + "/sole.desktop", "[Desktop Entry]\nType=Application\nName=S\nExec=/opt/sole --new %U\n");
    write(system_ + "/sole-hidden.desktop",
        "[Desktop Entry]\nType=Application\nName=S\nExec=sole --other\nNoDisplay=true\n");
    write(system_ + "/suite-a.desktop", "[Desktop Entry]\nType=Application\nName=A\nExec=suite --a\n");
    write(system_ + "/suite-b.desktop", "[Desktop Entry]\nType=Application\nName=B\nExec=suite --b\n");
    write(system_ + "/script.desktop", "[Desktop Entry]\nType=Application\nName=P\nExec=python3 /opt/script.py\n");
    entries_.refresh();
    EXPECT_EQ(idOf(entries_.withExecutable("/usr/lib/sole/sole")), "sole");
    EXPECT_EQ(entries_.withExecutable("/usr/bin/suite"), nullptr);
    EXPECT_EQ(entries_.withExecutable("/usr/bin/python3"), nullptr);
    EXPECT_EQ(entries_.withExecutable(""), nullptr);
}

TEST_F(DesktopEntriesTest, ChangesAreThereAtTheNextRefresh)
{
    entries_.refresh();
    EXPECT_EQ(entries_.withID("fresh"), nullptr);
    write(user_ + "/fresh.desktop", entry("Fresh"));
    entries_.refresh();
    ASSERT_TRUE(entries_.withID("fresh"));
    EXPECT_EQ(entries_.localizedName(*entries_.withID("fresh")), "Fresh");

    write(user_ + "/fresh.desktop", entry("Other", "StartupWMClass=fresh-window\n"));
    entries_.refresh();
    EXPECT_EQ(idOf(entries_.withStartupWMClass("fresh-window")), "fresh");
    EXPECT_EQ(entries_.localizedName(*entries_.withID("fresh")), "Other");

    write(user_ + "/new/below.desktop", entry("Below"));
    entries_.refresh();
    EXPECT_TRUE(entries_.withID("new-below"));

    std::filesystem::remove(user_ + "/fresh.desktop");
    entries_.refresh();
    EXPECT_EQ(entries_.withID("fresh"), nullptr);
}

TEST_F(DesktopEntriesTest, AFolderThatIsMadeLaterIsRead)
{
    std::filesystem::remove(user_);
    entries_.refresh();
    write(user_ + "/late.desktop", entry("Late"));
    entries_.refresh();
    EXPECT_TRUE(entries_.withID("late"));
}

TEST_F(DesktopEntriesTest, WhatIsNoEntryIsPassedOver)
{
    ASSERT_EQ(mkfifo((system_ + "/fifo.desktop").c_str(), 0600), 0);
    std::filesystem::create_directory(system_ + "/folder.desktop");
    std::filesystem::create_symlink("missing", system_ + "/dangling.desktop");
    std::filesystem::create_directory_symlink("..", system_ + "/loop");
    std::filesystem::create_directory_symlink(".", system_ + "/loop2");
    write(system_ + "/huge.desktop", entry("Huge") + std::string(2 * 1024 * 1024, '#'));
    write(system_ + "/binary.desktop", std::string("\0\xFF[\n[Desktop Entry\n=\nType", 26));
    write(system_ + "/good.desktop", entry("Good"));
    entries_.refresh();
    for (auto const* id : { "fifo", "folder", "dangling", "huge", "binary", "loop2-good" })
        EXPECT_EQ(entries_.withID(id), nullptr) << id;
    EXPECT_TRUE(entries_.withID("good"));
}

TEST_F(DesktopEntriesTest, ThousandUnchangedEntriesAreCheckedInMilliseconds)
{
    for (int i = 0; i < 1000; ++i)
        write(system_ + "/entry" + std::to_string(i) + ".desktop", entry("Entry"));
    entries_.refresh();
    usleep(100'000);
    entries_.refresh();
    auto const start = std::chrono::steady_clock::now();
    entries_.refresh();
    auto const elapsed = std::chrono::steady_clock::now() - start;
    RecordProperty(
        "microseconds", static_cast<int>(std::chrono::duration_cast<std::chrono::microseconds>(elapsed).count()));
    EXPECT_LT(elapsed, std::chrono::milliseconds(100));
}

TEST_F(DesktopEntriesTest, CategoriesAreKeptAsTheyStandInTheFile)
{
    write(system_ + "/a.desktop", entry("A", "Categories = Utility;Settings; \n[Other]\nCategories=Game;\n"));
    write(system_ + "/b.desktop", entry("B"));
    entries_.refresh();
    ASSERT_TRUE(entries_.withID("a") && entries_.withID("b"));
    EXPECT_EQ(entries_.withID("a")->categories, "Utility;Settings;");
    EXPECT_EQ(entries_.withID("b")->categories, "");
}

TEST_F(DesktopEntriesTest, AllHasEachIDOnceAlsoWhereItSaysThatThereIsNoApplication)
{
    write(user_ + "/viewer.desktop", entry("Mine"));
    write(system_ + "/viewer.desktop", entry("Theirs"));
    write(user_ + "/gone.desktop", entry("Gone", "Hidden=true\n"));
    write(system_ + "/gone.desktop", entry("Still there"));
    write(system_ + "/quiet.desktop", entry("Quiet", "NoDisplay=true\n"));
    entries_.refresh();
    std::vector<std::string> found;
    for (auto const& entry : entries_.all())
        found.push_back(entry.id + (entry.path.empty() ? " none" : entry.isVisible ? " shown" : " not shown"));
    EXPECT_THAT(found, testing::UnorderedElementsAre("viewer shown", "gone none", "quiet not shown"));
    EXPECT_EQ(entries_.withID("viewer")->path, user_ + "/viewer.desktop");
}

TEST_F(DesktopEntriesTest, TheGenerationChangesOnlyWithWhatIsInstalled)
{
    write(user_ + "/a.desktop", entry("A"));
    entries_.refresh();
    // Marks that are too young are not trusted yet, and what they mark is read once more.
    usleep(100'000);
    entries_.refresh();
    auto const settled = entries_.generation();
    entries_.refresh();
    EXPECT_EQ(entries_.generation(), settled);
    write(user_ + "/b.desktop", entry("B"));
    entries_.refresh();
    EXPECT_NE(entries_.generation(), settled);
}

TEST_F(DesktopEntriesTest, AProgramThatComesOrGoesInPathIsAChange)
{
    auto const programs = folder_.url().path() + "/programs";
    std::filesystem::create_directories(programs);
    std::string const path = getenv("PATH");
    setenv("PATH", ("relative::" + programs + ":" + path).c_str(), 1);
    write(user_ + "/a.desktop", entry("A"));
    entries_.refresh();
    usleep(100'000);
    entries_.refresh();
    auto const settled = entries_.generation();
    entries_.refresh();
    EXPECT_EQ(entries_.generation(), settled);
    write(programs + "/tool", "#!/bin/sh\n");
    entries_.refresh();
    EXPECT_NE(entries_.generation(), settled);
    setenv("PATH", path.c_str(), 1);
}

TEST(ApplicationsFoldersTest, TheUsersComesFirstAndThoseOfPackagedApplicationsLast)
{
    auto const folders = applicationsFolders();
    auto const place = [&](std::string const& folder) {
        EXPECT_EQ(std::count(folders.begin(), folders.end(), folder), 1) << folder;
        return std::find(folders.begin(), folders.end(), folder) - folders.begin();
    };
    std::string const user = g_get_user_data_dir();
    EXPECT_EQ(place(user + "/applications"), 0);
    EXPECT_GT(place(user + "/flatpak/exports/share/applications"), 0);
    EXPECT_GT(place("/var/lib/flatpak/exports/share/applications"), 0);
    EXPECT_GT(place("/var/lib/snapd/desktop/applications"), 0);
    for (auto directory = g_get_system_data_dirs(); *directory; ++directory) {
        std::string folder = *directory;
        folder.erase(folder.find_last_not_of('/') + 1);
        EXPECT_LT(place(folder + "/applications"), place("/var/lib/snapd/desktop/applications")) << folder;
    }
}

TEST_F(DesktopEntriesTest, LiesInAnApplicationsFolderAlsoThroughLinks)
{
    write(system_ + "/kde/viewer.desktop", entry("Viewer"));
    write(folder_.url().path() + "/loose.desktop", entry("Loose"));
    std::filesystem::create_symlink(system_ + "/kde/viewer.desktop", folder_.url().path() + "/alias.desktop");
    std::filesystem::create_symlink(folder_.url().path() + "/loose.desktop", user_ + "/installed.desktop");
    write(folder_.url().path() + "/system/applications-not/near.desktop", entry("Near"));
    std::vector<std::string> const folders { user_, system_ };
    EXPECT_TRUE(liesInApplicationsFolder(system_ + "/kde/viewer.desktop", folders));
    EXPECT_TRUE(liesInApplicationsFolder(folder_.url().path() + "/alias.desktop", folders));
    EXPECT_TRUE(liesInApplicationsFolder(user_ + "/installed.desktop", folders));
    EXPECT_FALSE(liesInApplicationsFolder(folder_.url().path() + "/loose.desktop", folders));
    EXPECT_FALSE(liesInApplicationsFolder(system_ + "/../../loose.desktop", folders));
    EXPECT_FALSE(liesInApplicationsFolder(folder_.url().path() + "/system/applications-not/near.desktop", folders));
    EXPECT_FALSE(liesInApplicationsFolder("loose.desktop", folders));
}

}
