#pragma once

#include "Platform/FileURL.h"
#include "Platform/InfoPanel.h"
#include "Platform/PreferencesWindow.h"
#include "Platform/PreviewPanel.h"

#include <functional>
#include <memory>
#include <optional>

namespace marrowick {

/// Makes the program's windows. None of them is shown before it is asked to be. Main thread only.
class Windows {
public:
    virtual ~Windows() = default;

    virtual std::unique_ptr<InfoPanel> makeInfoPanel(InfoPanelHandlers handlers) = 0;
    virtual std::unique_ptr<PreferencesWindow> makePreferencesWindow(
        PreferencesLayout const& layout, PreferencesHandlers handlers)
        = 0;

    /// The one preview panel, which lives as long as this; null where the desktop has none.
    virtual PreviewPanel* previewPanel() = 0;

    /// Lets the user choose a folder, or make one, beginning in `startingIn`. Returns at once; `done` comes later, once, with
    /// none when the user does not choose.
    virtual void chooseFolder(FileURL const& startingIn, std::function<void(std::optional<FileURL>)> done) = 0;
};

}
