#include "UI/PreferencesWindowController.h"

#include "Platform/Platform.h"
#include "Platform/SharedObjects.h"
#include "Support/FinderSyncBridge.h"
#include "Support/Preferences.h"

#include <array>
#include <initializer_list>
#include <optional>
#include <string>
#include <utility>

namespace marrowick {

namespace {

using Preference = PreferencesWindowController::Preference;

struct CheckboxSetting {
    Preference preference;
    char const* key;
    char const* title;
    bool (Preferences::*isOn)() const;
};

constexpr std::array settings {
    CheckboxSetting { Preference::inlineItems, "inlineItemsIntoMainMenu", "Inline Marrowick Items into the main menu",
        &Preferences::inlineItemsIntoMainMenu },
    CheckboxSetting {
        Preference::desktopSubmenu, "addDesktopSubmenu", "Add a Desktop submenu", &Preferences::addDesktopSubmenu },
    CheckboxSetting { Preference::processesSubmenu, "addProcessesSubmenu", "Add a Processes submenu",
        &Preferences::addProcessesSubmenu },
    CheckboxSetting { Preference::prefPanesSubmenu, "addPrefPanesSubmenu", "Add a Preference Panes submenu",
        &Preferences::addPrefPanesSubmenu },
    CheckboxSetting { Preference::recentItemsSubmenu, "addRecentItemsSubmenu", "Add a Recent Items submenu",
        &Preferences::addRecentItemsSubmenu },
    CheckboxSetting { Preference::useFinderLabelColors, "useFinderLabelColors", "Use Finder label colors",
        &Preferences::useFinderLabelColors },
    CheckboxSetting { Preference::runScriptFiles, "runScriptFiles",
        "Run .sh and .scpt items (Option-click to edit instead)", &Preferences::runScriptFiles },
    CheckboxSetting { Preference::tossDotApp, "tossDotAppExtension", "Hide “.app” extensions in menus",
        &Preferences::tossDotAppExtension },
    CheckboxSetting { Preference::tossDotScpt, "tossDotScptExtension", "Hide “.scpt” extensions in menus",
        &Preferences::tossDotScptExtension },
    CheckboxSetting { Preference::ignoreEmptyFolder, "ignoreEmptyItemsFolder",
        "Hide the Items menu entirely when empty", &Preferences::ignoreEmptyItemsFolder },
    CheckboxSetting { Preference::sortProcessMenu, "sortProcessMenu", "Sort the Processes menu alphabetically",
        &Preferences::sortProcessMenu },
    CheckboxSetting { Preference::addMarrowickToProcessMenu, "addMarrowickToProcessMenu",
        "Add Marrowick Preferences to the Processes menu", &Preferences::addMarrowickToProcessMenu },
};

constexpr std::size_t tagOf(Preference preference)
{
    return static_cast<std::size_t>(preference);
}

CheckboxGroup checkboxGroup(std::string title, std::initializer_list<Preference> items)
{
    CheckboxGroup group { std::move(title), {} };
    for (auto const item : items)
        group.checkboxes.push_back({ tagOf(item), settings.at(tagOf(item)).title });
    return group;
}

PreferencesLayout layout()
{
    return {
        .title = "Marrowick Preferences",
        .width = 460,
        .height = 480,
        .folderLabel = "Marrowick Items Folder:",
        .chooseTitle = "Choose…",
        .revealTitle = "Reveal",
        .sortLabel = "Sort Items In MW Menus:",
        .sortTitles = { "Alphabetically", "Apps, then folders, then documents", "By date modified" },
        .groups = {
            checkboxGroup("Appearance",
                { Preference::useFinderLabelColors, Preference::tossDotApp, Preference::tossDotScpt }),
            checkboxGroup("Menu Contents",
                { Preference::inlineItems, Preference::desktopSubmenu, Preference::processesSubmenu,
                    Preference::prefPanesSubmenu, Preference::recentItemsSubmenu, Preference::ignoreEmptyFolder }),
            checkboxGroup("Behavior",
                { Preference::runScriptFiles, Preference::sortProcessMenu, Preference::addMarrowickToProcessMenu }),
        },
    };
}

}

PreferencesWindowController& PreferencesWindowController::shared()
{
    return sharedObject<PreferencesWindowController>();
}

PreferencesWindowController::PreferencesWindowController()
    : window_(platform().windows->makePreferencesWindow(layout(),
        { .chooseFolder = [this] { chooseFolder(); },
            .revealFolder = [this] { revealFolder(); },
            .sortModeChanged = [this](std::size_t index) { sortModeChanged(index); },
            .checkboxToggled = [this](std::size_t tag, bool isOn) { checkboxToggled(tag, isOn); } }))
    , self_(std::make_shared<PreferencesWindowController*>(this))
{
}

void PreferencesWindowController::show()
{
    assertMainThread();
    reloadFromPreferences();
    window_->show();
    platform().application->activate();
}

void PreferencesWindowController::reloadFromPreferences()
{
    auto const& preferences = Preferences::shared();
    preferences.ensureItemsFolderExists();
    window_->setFolder(preferences.itemsFolderURL().path());
    window_->selectSortMode(static_cast<std::size_t>(preferences.sortMode()));
    for (auto const& setting : settings)
        window_->setChecked(tagOf(setting.preference), (preferences.*setting.isOn)());
}

void PreferencesWindowController::chooseFolder()
{
    platform().windows->chooseFolder(Preferences::shared().itemsFolderURL(),
        [weakSelf = std::weak_ptr(self_)](std::optional<FileURL> const& folder) {
            if (!folder)
                return;
            platform().defaultsStore->set("itemsFolderPath", folder->path());
            FinderSyncBridge::shared().watchItemsFolder();
            FinderSyncBridge::shared().refreshSnapshot();
            if (auto const self = weakSelf.lock())
                (*self)->reloadFromPreferences();
        });
}

void PreferencesWindowController::revealFolder()
{
    auto const& preferences = Preferences::shared();
    preferences.ensureItemsFolderExists();
    platform().workspace->activateFileViewerSelecting({ preferences.itemsFolderURL() });
}

void PreferencesWindowController::sortModeChanged(std::size_t index)
{
    static constexpr std::array names { "alphabetical", "kindThenAlphabetical", "dateModified" };
    if (index >= names.size())
        fatalError("Marrowick: a sort mode that there is not was chosen");
    platform().defaultsStore->set("sortMode", std::string(names.at(index)));
}

void PreferencesWindowController::checkboxToggled(std::size_t tag, bool isOn)
{
    platform().defaultsStore->set(settings.at(tag).key, isOn);
}

}
