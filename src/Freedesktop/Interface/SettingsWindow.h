#pragma once

#include "Platform/PreferencesWindow.h"

#include <QWidget>

#include <map>

class QCheckBox;
class QComboBox;
class QLabel;
class QLayout;

namespace marrowick {

/// The window of the settings: an ordinary window of a fixed size that closing only hides.
class SettingsWindow final : public QWidget, public PreferencesWindow {
public:
    SettingsWindow(PreferencesLayout const& layout, PreferencesHandlers handlers);

    void setFolder(std::string const& path) override;
    void selectSortMode(std::size_t index) override;
    void setChecked(std::size_t tag, bool isOn) override;
    void show() override;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool event(QEvent* event) override;

private:
    QLayout* folderSection(PreferencesLayout const& layout);
    QLayout* sortSection(PreferencesLayout const& layout);
    QLayout* checkboxSection(CheckboxGroup const& group);
    void showFolder();
    void fitIntoScreen();

    PreferencesHandlers handlers_;
    std::string folder_;
    /// All that is in the window, which scrolls on a screen that is too small for it.
    QWidget* content_;
    QSize leastSize_;
    QLabel* folderField_;
    QComboBox* sortPopup_;
    std::map<std::size_t, QCheckBox*> checkboxes_;
};

}
