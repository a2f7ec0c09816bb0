#include "Fakes/DiskTest.h"
#include "Support/ExchangeCoding.h"
#include "Support/FinderSyncBridge.h"
#include "UI/PreferencesWindowController.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

using Preference = PreferencesWindowController::Preference;
using Titles = std::vector<std::string>;

/// A setting with a checkbox, what it is without a stored value, and its title.
struct SettingCase {
    Preference preference;
    char const* key;
    bool isOnByDefault;
    char const* title;
};

std::vector<SettingCase> const settings {
    { Preference::inlineItems, "inlineItemsIntoMainMenu", true, "Inline Marrowick Items into the main menu" },
    { Preference::desktopSubmenu, "addDesktopSubmenu", true, "Add a Desktop submenu" },
    { Preference::processesSubmenu, "addProcessesSubmenu", true, "Add a Processes submenu" },
    { Preference::prefPanesSubmenu, "addPrefPanesSubmenu", false, "Add a Preference Panes submenu" },
    { Preference::recentItemsSubmenu, "addRecentItemsSubmenu", true, "Add a Recent Items submenu" },
    { Preference::useFinderLabelColors, "useFinderLabelColors", true, "Use Finder label colors" },
    { Preference::runScriptFiles, "runScriptFiles", true, "Run .sh and .scpt items (Option-click to edit instead)" },
    { Preference::tossDotApp, "tossDotAppExtension", true, "Hide “.app” extensions in menus" },
    { Preference::tossDotScpt, "tossDotScptExtension", false, "Hide “.scpt” extensions in menus" },
    { Preference::ignoreEmptyFolder, "ignoreEmptyItemsFolder", false, "Hide the Items menu entirely when empty" },
    { Preference::sortProcessMenu, "sortProcessMenu", true, "Sort the Processes menu alphabetically" },
    { Preference::addMarrowickToProcessMenu, "addMarrowickToProcessMenu", true,
        "Add Marrowick Preferences to the Processes menu" },
};

std::size_t tagOf(Preference preference)
{
    return static_cast<std::size_t>(preference);
}

class PreferencesWindowTest : public DiskTest {
protected:
    PreferencesWindowTest()
    {
        folder.folder("support");
        desktop.fileManager.standardDirectories[StandardDirectory::applicationSupport] = { folder / "support" };
    }

    void show() { PreferencesWindowController::shared().show(); }
    FakeWindows::PreferencesState& window() { return desktop.windows.preferences; }
    std::string stored(char const* key)
    {
        auto const value = desktop.defaults.object(key);
        auto const* text = value ? std::get_if<std::string>(&*value) : nullptr;
        return text ? *text : "no text";
    }

    FileURL const defaultFolder = folder / "support/Marrowick/Marrowick Items";
};

using PreferencesWindowDeathTest = PreferencesWindowTest;

TEST_F(PreferencesWindowTest, AFreshUserSeesTheDefaults)
{
    show();
    EXPECT_EQ(window().folder, defaultFolder.path());
    EXPECT_EQ(window().sortMode, 0u);
    for (auto const& setting : settings)
        EXPECT_EQ(window().checked.at(tagOf(setting.preference)), setting.isOnByDefault) << setting.key;
    EXPECT_EQ(window().checked.size(), settings.size());
}

TEST_F(PreferencesWindowTest, TheWindowIsLaidOutInItsOrder)
{
    show();
    auto const& layout = window().layout;
    EXPECT_EQ(layout.title, "Marrowick Preferences");
    EXPECT_EQ(layout.width, 460);
    EXPECT_EQ(layout.height, 480);
    EXPECT_EQ(layout.folderLabel, "Marrowick Items Folder:");
    EXPECT_EQ(layout.chooseTitle, "Choose…");
    EXPECT_EQ(layout.revealTitle, "Reveal");
    EXPECT_EQ(layout.sortLabel, "Sort Items In MW Menus:");
    EXPECT_EQ(
        layout.sortTitles, (Titles { "Alphabetically", "Apps, then folders, then documents", "By date modified" }));

    std::vector<std::pair<std::string, std::vector<std::size_t>>> groups;
    std::map<std::size_t, std::string> titles;
    for (auto const& group : layout.groups) {
        groups.emplace_back(group.title, std::vector<std::size_t> {});
        for (auto const& [tag, title] : group.checkboxes) {
            groups.back().second.push_back(tag);
            titles[tag] = title;
        }
    }
    EXPECT_EQ(groups,
        (std::vector<std::pair<std::string, std::vector<std::size_t>>> {
            { "Appearance", { 5, 7, 8 } },
            { "Menu Contents", { 0, 1, 2, 3, 4, 9 } },
            { "Behavior", { 6, 10, 11 } },
        }));
    for (auto const& setting : settings)
        EXPECT_EQ(titles.at(tagOf(setting.preference)), setting.title);
}

TEST_F(PreferencesWindowTest, TheWindowIsFilledBeforeItComesToTheFrontWithTheProgram)
{
    show();
    EXPECT_EQ(window().timesShown, 1);
    EXPECT_EQ(desktop.calls, (CallRecord { "preferences in front" }));
    EXPECT_EQ(desktop.application.activations, 1);
    std::vector<std::size_t> order;
    for (auto const& setting : settings)
        order.push_back(tagOf(setting.preference));
    EXPECT_EQ(window().settingOrder, order);
}

TEST_F(PreferencesWindowTest, EachToggleStoresItsKeyAtOnceAndNothingElse)
{
    show();
    for (auto const& setting : settings) {
        for (bool const isOn : { !setting.isOnByDefault, setting.isOnByDefault }) {
            desktop.defaults.values.clear();
            window().handlers.checkboxToggled(tagOf(setting.preference), isOn);
            EXPECT_EQ(desktop.defaults.values.size(), 1u);
            EXPECT_EQ(desktop.defaults.object(setting.key), DefaultsValue(isOn)) << setting.key;
        }
    }
}

TEST_F(PreferencesWindowTest, ChangesMadeElsewhereShowAtTheNextOpening)
{
    show();
    desktop.defaults.set("addDesktopSubmenu", false);
    desktop.defaults.set("tossDotScptExtension", true);
    desktop.defaults.set("sortMode", "dateModified");
    EXPECT_TRUE(window().checked.at(tagOf(Preference::desktopSubmenu)));
    show();
    EXPECT_FALSE(window().checked.at(tagOf(Preference::desktopSubmenu)));
    EXPECT_TRUE(window().checked.at(tagOf(Preference::tossDotScpt)));
    EXPECT_EQ(window().sortMode, 2u);
    EXPECT_EQ(window().timesShown, 2);
}

TEST_F(PreferencesWindowTest, AnUnreadableSettingShowsItsDefault)
{
    desktop.defaults.set("addDesktopSubmenu", ForeignValue {});
    desktop.defaults.set("sortMode", "nonsense");
    desktop.defaults.set("itemsFolderPath", 5.0);
    show();
    EXPECT_TRUE(window().checked.at(tagOf(Preference::desktopSubmenu)));
    EXPECT_EQ(window().sortMode, 0u);
    EXPECT_EQ(window().folder, defaultFolder.path());
}

TEST_F(PreferencesWindowTest, EachSortModeStoresItsName)
{
    show();
    Titles const names { "alphabetical", "kindThenAlphabetical", "dateModified" };
    for (std::size_t index = 0; index < names.size(); ++index) {
        window().handlers.sortModeChanged(index);
        EXPECT_EQ(stored("sortMode"), names[index]);
        show();
        EXPECT_EQ(window().sortMode, index);
    }
}

TEST_F(PreferencesWindowDeathTest, ASortModeThatThereIsNotStopsTheProcess)
{
    show();
    desktop.log.echoToStandardError();
    EXPECT_DEATH(window().handlers.sortModeChanged(3), "sort mode");
}

TEST_F(PreferencesWindowTest, ShowingMakesTheItemsFolder)
{
    show();
    EXPECT_TRUE(desktop.fileManager.fileExists(defaultFolder));
}

TEST_F(PreferencesWindowTest, RevealMakesTheFolderAndShowsIt)
{
    show();
    folder.remove("support/Marrowick/Marrowick Items");
    window().handlers.revealFolder();
    EXPECT_TRUE(desktop.fileManager.fileExists(defaultFolder));
    EXPECT_EQ(desktop.workspace.revealed, (FakeWorkspace::Revealed { { defaultFolder } }));
}

TEST_F(PreferencesWindowTest, ChoosingBeginsInTheFolderOfTheMoment)
{
    show();
    window().handlers.chooseFolder();
    ASSERT_EQ(desktop.windows.choices.size(), 1u);
    EXPECT_EQ(desktop.windows.choices.front().startingIn, defaultFolder);
}

TEST_F(PreferencesWindowTest, CancellingChangesNothing)
{
    show();
    window().handlers.chooseFolder();
    desktop.windows.answerChoice(std::nullopt);
    EXPECT_EQ(stored("itemsFolderPath"), "no text");
    EXPECT_EQ(window().folder, defaultFolder.path());
    EXPECT_TRUE(desktop.dispatch.watched().empty());
}

TEST_F(PreferencesWindowTest, AChosenFolderIsStoredWatchedPublishedAndShown)
{
    auto const chosen = folder.folder("elsewhere");
    folder.folder("elsewhere/Projects");
    show();
    window().handlers.chooseFolder();
    desktop.windows.answerChoice(chosen);
    EXPECT_EQ(stored("itemsFolderPath"), chosen.path());
    EXPECT_EQ(window().folder, chosen.path());
    EXPECT_EQ(desktop.dispatch.watched(), std::vector { chosen });
    desktop.dispatch.runBackground();
    auto const snapshot = decodeSnapshot(folder.content("support/Marrowick/menu-snapshot.json"));
    ASSERT_TRUE(snapshot);
    ASSERT_EQ(snapshot->roots.size(), 1u);
    EXPECT_EQ(std::string_view(snapshot->roots.front().path), (chosen.appendingPathComponent("Projects")).path());
}

TEST_F(PreferencesWindowTest, AChosenFolderThatDoesNotExistYetIsMadeAndFollowed)
{
    auto const chosen = folder / "fresh";
    show();
    window().handlers.chooseFolder();
    desktop.windows.answerChoice(chosen);
    EXPECT_TRUE(desktop.fileManager.fileExists(chosen));
    EXPECT_EQ(stored("itemsFolderPath"), chosen.path());
    EXPECT_EQ(window().folder, chosen.path());
}

TEST_F(PreferencesWindowTest, AnUntickedSubmenuIsStoredAndNoOpenMenuIsClosed)
{
    show();
    auto const read = [&] { return desktop.defaults.object("addDesktopSubmenu"); };
    EXPECT_EQ(read(), std::nullopt);
    window().handlers.checkboxToggled(tagOf(Preference::desktopSubmenu), false);
    EXPECT_EQ(read(), DefaultsValue(false));
    EXPECT_EQ(desktop.menus.cancellations, 0);
}

}
}
