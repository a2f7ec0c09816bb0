#include "Freedesktop/Files/FreedesktopFileManager.h"
#include "Freedesktop/Files/StandardDirectories.h"

#include "Fakes/TemporaryFolder.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <map>
#include <pwd.h>
#include <unistd.h>

namespace marrowick {
namespace {

/// Each test has the environment it sets, and nothing of the person who runs it.
class StandardDirectoriesTest : public testing::Test {
protected:
    void SetUp() override
    {
        for (auto const* name : { "HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME" }) {
            auto const* value = std::getenv(name);
            saved_[name] = value ? std::optional<std::string>(value) : std::nullopt;
            ::unsetenv(name);
        }
        set("HOME", home.url().path());
    }
    void TearDown() override
    {
        for (auto const& [name, value] : saved_)
            value ? ::setenv(name.c_str(), value->c_str(), 1) : ::unsetenv(name.c_str());
    }

    static void set(char const* name, std::string const& value) { ::setenv(name, value.c_str(), 1); }

    std::string path(StandardDirectory directory) const
    {
        auto const urls = files.urls(directory);
        EXPECT_EQ(urls.size(), 1U);
        EXPECT_TRUE(urls.at(0).hasDirectoryPath());
        return urls.at(0).path();
    }
    std::string inHome(std::string const& name) const { return (home / name).path(); }
    void writeSettings(std::string const& text) const
    {
        home.folder(".config");
        home.file(".config/user-dirs.dirs", text);
    }

    TemporaryFolder home;
    FreedesktopFileManager files;

private:
    std::map<std::string, std::optional<std::string>> saved_;
};

TEST_F(StandardDirectoriesTest, HomeIsTheEnvironmentsWhereThatIsAPath)
{
    EXPECT_EQ(files.homeDirectory(), home.url());
    set("HOME", "/some/where///");
    EXPECT_EQ(files.homeDirectory().path(), "/some/where");
    EXPECT_TRUE(files.homeDirectory().hasDirectoryPath());

    std::string const databaseHome = ::getpwuid(::getuid())->pw_dir;
    set("HOME", "");
    EXPECT_EQ(files.homeDirectory().path(), databaseHome);
    set("HOME", "relative");
    EXPECT_EQ(files.homeDirectory().path(), databaseHome);
    ::unsetenv("HOME");
    EXPECT_EQ(files.homeDirectory().path(), databaseHome);
}

TEST_F(StandardDirectoriesTest, ApplicationSupportIsTheDataFolder)
{
    EXPECT_EQ(path(StandardDirectory::applicationSupport), inHome(".local/share"));
    set("XDG_DATA_HOME", "/data/home/");
    EXPECT_EQ(path(StandardDirectory::applicationSupport), "/data/home");
    for (auto const* ignored : { "", "relative", "~/share" }) {
        set("XDG_DATA_HOME", ignored);
        EXPECT_EQ(path(StandardDirectory::applicationSupport), inHome(".local/share")) << ignored;
    }
}

TEST_F(StandardDirectoriesTest, WithoutSettingsTheFoldersHaveTheirUsualNames)
{
    EXPECT_EQ(path(StandardDirectory::desktop), inHome("Desktop"));
    EXPECT_EQ(path(StandardDirectory::documents), inHome("Documents"));
    EXPECT_EQ(path(StandardDirectory::downloads), inHome("Downloads"));
}

TEST_F(StandardDirectoriesTest, TheSettingsAreReadAfreshEachTime)
{
    writeSettings("XDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\nXDG_DOCUMENTS_DIR=\"/srv/doc\"\n");
    EXPECT_EQ(path(StandardDirectory::desktop), inHome("Schreibtisch"));
    EXPECT_EQ(path(StandardDirectory::documents), "/srv/doc");
    EXPECT_EQ(path(StandardDirectory::downloads), inHome("Downloads"));
    writeSettings("XDG_DESKTOP_DIR=\"$HOME/Bureau\"\n");
    EXPECT_EQ(path(StandardDirectory::desktop), inHome("Bureau"));
    EXPECT_EQ(path(StandardDirectory::documents), inHome("Documents"));
}

TEST_F(StandardDirectoriesTest, TheSettingsLieInTheConfigurationFolder)
{
    home.folder("elsewhere");
    home.file("elsewhere/user-dirs.dirs", "XDG_DOWNLOAD_DIR=\"$HOME/In\"\n");
    set("XDG_CONFIG_HOME", inHome("elsewhere"));
    EXPECT_EQ(path(StandardDirectory::downloads), inHome("In"));
    set("XDG_CONFIG_HOME", "elsewhere");
    EXPECT_EQ(path(StandardDirectory::downloads), inHome("Downloads"));
}

TEST_F(StandardDirectoriesTest, SettingsThatAreNoFileAreNotWaitedFor)
{
    home.folder(".config");
    home.fifo(".config/user-dirs.dirs");
    EXPECT_EQ(path(StandardDirectory::desktop), inHome("Desktop"));
}

TEST(UserDirectory, IsTheLastThatTheSettingsName)
{
    struct Row {
        char const* settings;
        std::optional<std::string> path;
    };
    Row const rows[] = {
        { "", std::nullopt },
        { "XDG_DESKTOP_DIR=\"$HOME/D\"", "/home/me/D" },
        { "XDG_DESKTOP_DIR=\"$HOME/D/\"\n", "/home/me/D" },
        { "# XDG_DESKTOP_DIR=\"$HOME/D\"\n", std::nullopt },
        { "  XDG_DESKTOP_DIR \t= \"$HOME/D\" # mine\n", "/home/me/D" },
        { "XDG_DESKTOP_DIR=\"/a\"\nXDG_DESKTOP_DIR=\"/b\"\n", "/b" },
        { "XDG_DESKTOP_DIR=\"/a\"\nXDG_DESKTOP_DIR=wrong\n", "/a" },
        { "XDG_DESKTOP_DIR=\"/with \\\"quotes\\\" and \\\\ and \\$\"\n", "/with \"quotes\" and \\ and $" },
        { "XDG_DESKTOP_DIR=\"/broken \xFF\"\n", "/broken \xFF" },
        { "XDG_DESKTOP_DIR=\"$HOME\"\n", std::nullopt },
        { "XDG_DESKTOP_DIR=\"$HOME/\"\n", std::nullopt },
        { "XDG_DESKTOP_DIR=\"/home/me\"\n", std::nullopt },
        { "XDG_DESKTOP_DIR=\"$HOMEX/D\"\n", std::nullopt },
        { "XDG_DESKTOP_DIR=\"D\"\n", std::nullopt },
        { "XDG_DESKTOP_DIR=$HOME/D\n", std::nullopt },
        { "XDG_DESKTOP_DIR\n", std::nullopt },
        { "XDG_DESKTOP_DIRX=\"/x\"\n", std::nullopt },
        { "XDG_DOCUMENTS_DIR=\"/x\"\n", std::nullopt },
        { "XDG_DESKTOP_DIR=\"/unfinished", "/unfinished" },
        { "\n\n=\"\nXDG_DESKTOP_DIR=\"\\", std::nullopt },
    };
    for (auto const& row : rows)
        EXPECT_EQ(userDirectory(row.settings, "XDG_DESKTOP_DIR", "/home/me"), row.path) << row.settings;
}

}
}
