#include "Fakes/DiskTest.h"
#include "Fakes/TestPlatform.h"
#include "Support/Preferences.h"

#include <filesystem>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

struct BooleanSetting {
    std::string_view key;
    bool (Preferences::*read)() const;
    bool whenAbsent;
};

std::vector<BooleanSetting> const booleanSettings {
    { "inlineItemsIntoMainMenu", &Preferences::inlineItemsIntoMainMenu, true },
    { "addDesktopSubmenu", &Preferences::addDesktopSubmenu, true },
    { "addProcessesSubmenu", &Preferences::addProcessesSubmenu, true },
    { "addPrefPanesSubmenu", &Preferences::addPrefPanesSubmenu, false },
    { "addRecentItemsSubmenu", &Preferences::addRecentItemsSubmenu, true },
    { "useFinderLabelColors", &Preferences::useFinderLabelColors, true },
    { "runScriptFiles", &Preferences::runScriptFiles, true },
    { "tossDotAppExtension", &Preferences::tossDotAppExtension, true },
    { "tossDotScptExtension", &Preferences::tossDotScptExtension, false },
    { "ignoreEmptyItemsFolder", &Preferences::ignoreEmptyItemsFolder, false },
    { "sortProcessMenu", &Preferences::sortProcessMenu, true },
    { "addMarrowickToProcessMenu", &Preferences::addMarrowickToProcessMenu, true },
    { "immedActionOnKeyPress", &Preferences::immedActionOnKeyPress, true },
};

class PreferencesTest : public PlatformTest {
protected:
    bool read(BooleanSetting const& setting) { return (Preferences::shared().*setting.read)(); }
    SortMode sortModeOf(DefaultsValue const& value)
    {
        desktop.defaults.set("sortMode", value);
        return Preferences::shared().sortMode();
    }
};

TEST_F(PreferencesTest, AFreshUserGetsTheDefaults)
{
    for (auto const& setting : booleanSettings)
        EXPECT_EQ(read(setting), setting.whenAbsent) << setting.key;
    EXPECT_EQ(Preferences::shared().sortMode(), SortMode::alphabetical);
}

TEST_F(PreferencesTest, EachSettingReadsItsOwnKey)
{
    for (auto const& stored : booleanSettings) {
        desktop.defaults.values.clear();
        desktop.defaults.set(stored.key, !stored.whenAbsent);
        for (auto const& setting : booleanSettings)
            EXPECT_EQ(read(setting), setting.whenAbsent != (setting.key == stored.key))
                << setting.key << " with " << stored.key << " stored";
    }
}

TEST_F(PreferencesTest, AStoredBooleanCountsWhateverTheDefaultIs)
{
    for (auto const& setting : booleanSettings) {
        for (bool const value : { true, false }) {
            desktop.defaults.set(setting.key, value);
            EXPECT_EQ(read(setting), value) << setting.key;
        }
    }
}

TEST_F(PreferencesTest, AStoredNumberIsTrueUnlessItIsZero)
{
    for (auto const& setting : booleanSettings) {
        for (double const number : { 1.0, -1.0, 0.5, 2.0, std::numeric_limits<double>::infinity() }) {
            desktop.defaults.set(setting.key, number);
            EXPECT_TRUE(read(setting)) << setting.key << " " << number;
        }
        desktop.defaults.set(setting.key, 0.0);
        EXPECT_FALSE(read(setting)) << setting.key;
        desktop.defaults.set(setting.key, -0.0);
        EXPECT_FALSE(read(setting)) << setting.key;
    }
}

TEST_F(PreferencesTest, AValueOfAnotherTypeReadsAsTheDefault)
{
    for (auto const& setting : booleanSettings) {
        for (auto const* text : { "YES", "NO", "true", "false", "1", "0", "" }) {
            desktop.defaults.set(setting.key, text);
            EXPECT_EQ(read(setting), setting.whenAbsent) << setting.key << " " << text;
        }
        desktop.defaults.set(setting.key, ForeignValue {});
        EXPECT_EQ(read(setting), setting.whenAbsent) << setting.key;
    }
}

TEST_F(PreferencesTest, AChangeShowsAtTheNextRead)
{
    auto const& preferences = Preferences::shared();
    EXPECT_TRUE(preferences.addDesktopSubmenu());
    desktop.defaults.set("addDesktopSubmenu", false);
    EXPECT_FALSE(preferences.addDesktopSubmenu());
    desktop.defaults.values.clear();
    EXPECT_TRUE(preferences.addDesktopSubmenu());
}

TEST_F(PreferencesTest, TheSortModeIsReadByItsExactName)
{
    EXPECT_EQ(sortModeOf("alphabetical"), SortMode::alphabetical);
    EXPECT_EQ(sortModeOf("kindThenAlphabetical"), SortMode::kindThenAlphabetical);
    EXPECT_EQ(sortModeOf("dateModified"), SortMode::dateModified);
}

TEST_F(PreferencesTest, AnUnknownSortModeIsAlphabetical)
{
    for (auto const* text : { "DateModified", "datemodified", "dateModified ", "kind", "" })
        EXPECT_EQ(sortModeOf(std::string(text)), SortMode::alphabetical) << text;
    EXPECT_EQ(sortModeOf(2.0), SortMode::alphabetical);
    EXPECT_EQ(sortModeOf(true), SortMode::alphabetical);
    EXPECT_EQ(sortModeOf(ForeignValue {}), SortMode::alphabetical);
}

TEST_F(PreferencesTest, SortModesAreNumberedInTheirOrder)
{
    EXPECT_EQ(static_cast<int>(SortMode::alphabetical), 0);
    EXPECT_EQ(static_cast<int>(SortMode::kindThenAlphabetical), 1);
    EXPECT_EQ(static_cast<int>(SortMode::dateModified), 2);
}

TEST_F(PreferencesTest, TheItemsFolderIsTheStoredPathAsItStands)
{
    for (auto const* path : { "/a/b", "relative/folder", "~/folder", "/a/../b", "", "/caf\xE9" }) {
        desktop.defaults.set("itemsFolderPath", path);
        auto const folder = Preferences::shared().itemsFolderURL();
        EXPECT_EQ(folder.path(), path);
        EXPECT_TRUE(folder.hasDirectoryPath());
    }
}

TEST_F(PreferencesTest, WithoutAStoredPathTheItemsFolderIsTheDefault)
{
    desktop.fileManager.standardDirectories[StandardDirectory::applicationSupport]
        = { FileURL("/home/u/support"), FileURL("/elsewhere") };
    EXPECT_EQ(Preferences::shared().itemsFolderURL().path(), "/home/u/support/Marrowick/Marrowick Items");
    EXPECT_TRUE(Preferences::shared().itemsFolderURL().hasDirectoryPath());
    desktop.defaults.set("itemsFolderPath", ForeignValue {});
    EXPECT_EQ(Preferences::shared().itemsFolderURL(), Preferences::defaultItemsFolderURL());
    desktop.defaults.set("itemsFolderPath", 3.0);
    EXPECT_EQ(Preferences::shared().itemsFolderURL(), Preferences::defaultItemsFolderURL());
}

TEST_F(PreferencesTest, TheDefaultItemsFolderIsFoundOnce)
{
    auto& directories = desktop.fileManager.standardDirectories;
    directories[StandardDirectory::applicationSupport] = { FileURL("/first") };
    EXPECT_EQ(Preferences::defaultItemsFolderURL().path(), "/first/Marrowick/Marrowick Items");
    directories[StandardDirectory::applicationSupport] = { FileURL("/second") };
    EXPECT_EQ(Preferences::defaultItemsFolderURL().path(), "/first/Marrowick/Marrowick Items");
}

TEST_F(PreferencesTest, WithoutASupportFolderTheProgramStops)
{
    desktop.fileManager.standardDirectories[StandardDirectory::applicationSupport] = {};
    desktop.log.echoToStandardError();
    EXPECT_DEATH(static_cast<void>(Preferences::shared().itemsFolderURL()), "Marrowick: .*application support");
}

class ItemsFolderCreationTest : public DiskTest {
protected:
    void ensure(std::string_view path)
    {
        desktop.defaults.set("itemsFolderPath", std::string(path));
        Preferences::shared().ensureItemsFolderExists();
        EXPECT_TRUE(desktop.log.lines().empty());
    }
};

TEST_F(ItemsFolderCreationTest, AMissingFolderIsMadeWithAllThatIsMissingAboveIt)
{
    auto const items = folder / "missing/above/Items";
    ensure(items.path());
    EXPECT_TRUE(std::filesystem::is_directory(items.path()));
    EXPECT_TRUE(std::filesystem::is_empty(items.path()));
}

TEST_F(ItemsFolderCreationTest, TheDefaultFolderIsMade)
{
    Preferences::shared().ensureItemsFolderExists();
    EXPECT_TRUE(std::filesystem::is_directory((folder / "support/Marrowick/Marrowick Items").path()));
}

TEST_F(ItemsFolderCreationTest, AnExistingFolderKeepsItsContents)
{
    auto const kept = folder.folder("Items/kept");
    ensure((folder / "Items").path());
    EXPECT_TRUE(std::filesystem::is_directory(kept.path()));
}

TEST_F(ItemsFolderCreationTest, APlainFileInItsPlaceStaysAsItIs)
{
    auto const file = folder.file("Items", "text");
    ensure(file.path());
    EXPECT_TRUE(std::filesystem::is_regular_file(file.path()));
    EXPECT_EQ(std::filesystem::file_size(file.path()), 4u);
}

TEST_F(ItemsFolderCreationTest, AFolderThatCannotBeMadeIsNoError)
{
    auto const file = folder.file("file", "text");
    ensure(file.path() + "/Items");
    EXPECT_FALSE(std::filesystem::exists(file.path() + "/Items"));
    ensure("");
}

}
}
