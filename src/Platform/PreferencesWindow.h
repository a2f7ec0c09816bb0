#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace marrowick {

struct Checkbox {
    /// By which the program and the window speak of it.
    std::size_t tag = 0;
    std::string title;
};

struct CheckboxGroup {
    std::string title;
    std::vector<Checkbox> checkboxes;
};

/// What stands in the window, from the top.
struct PreferencesLayout {
    std::string title;
    /// The least size of what is inside the frame, in points.
    int width = 0;
    int height = 0;
    std::string folderLabel;
    std::string chooseTitle;
    std::string revealTitle;
    std::string sortLabel;
    std::vector<std::string> sortTitles;
    std::vector<CheckboxGroup> groups;
};

/// What the user does in the window.
struct PreferencesHandlers {
    std::function<void()> chooseFolder;
    std::function<void()> revealFolder;
    std::function<void(std::size_t index)> sortModeChanged;
    std::function<void(std::size_t tag, bool isOn)> checkboxToggled;
};

/// The window of the settings. Setting a control here calls no handler. Main thread only.
class PreferencesWindow {
public:
    virtual ~PreferencesWindow() = default;

    /// Bytes that are not UTF-8 are repaired for display.
    virtual void setFolder(std::string const& path) = 0;
    virtual void selectSortMode(std::size_t index) = 0;
    virtual void setChecked(std::size_t tag, bool isOn) = 0;

    /// Puts the window into the middle of the screen, in front, with the keys. The same window where it is open already.
    virtual void show() = 0;
};

}
