#pragma once

#include "Freedesktop/DeliveryGate.h"
#include "Freedesktop/Interface/FolderChooser.h"
#include "Platform/Windows.h"

#include <memory>

namespace marrowick {

class PreviewWindow;

class FreedesktopWindows final : public Windows {
public:
    /// What comes late comes through `gate`.
    explicit FreedesktopWindows(std::shared_ptr<DeliveryGate> gate);
    ~FreedesktopWindows() override;

    std::unique_ptr<InfoPanel> makeInfoPanel(InfoPanelHandlers handlers) override;
    std::unique_ptr<PreferencesWindow> makePreferencesWindow(
        PreferencesLayout const& layout, PreferencesHandlers handlers) override;
    PreviewPanel* previewPanel() override;
    void chooseFolder(FileURL const& startingIn, std::function<void(std::optional<FileURL>)> done) override;

private:
    std::shared_ptr<DeliveryGate> gate_;
    FolderChooser folderChooser_;
    /// Made when it is asked for first.
    std::unique_ptr<PreviewWindow> previewPanel_;
};

}
