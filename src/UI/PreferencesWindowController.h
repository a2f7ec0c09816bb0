#pragma once

#include "Platform/PreferencesWindow.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace marrowick {

/// The window in which the user changes the settings: each control writes its setting at once, and the next menu shows it.
/// Main thread only.
class PreferencesWindowController {
public:
    /// The settings that have a checkbox.
    enum class Preference : std::uint8_t {
        inlineItems,
        desktopSubmenu,
        processesSubmenu,
        prefPanesSubmenu,
        recentItemsSubmenu,
        useFinderLabelColors,
        runScriptFiles,
        tossDotApp,
        tossDotScpt,
        ignoreEmptyFolder,
        sortProcessMenu,
        addMarrowickToProcessMenu,
    };

    static PreferencesWindowController& shared();

    PreferencesWindowController();

    /// Shows the settings as they are at this moment and brings the window to the front.
    void show();

private:
    void reloadFromPreferences();

    void chooseFolder();
    void revealFolder();
    void sortModeChanged(std::size_t index);
    void checkboxToggled(std::size_t tag, bool isOn);

    std::unique_ptr<PreferencesWindow> window_;
    /// What comes late looks whether this is still there.
    std::shared_ptr<PreferencesWindowController*> self_;
};

}
