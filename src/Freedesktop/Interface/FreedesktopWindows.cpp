#include "Freedesktop/Interface/FreedesktopWindows.h"

#include "Freedesktop/Interface/InfoPanelWindow.h"
#include "Freedesktop/Interface/SettingsWindow.h"
#include "Freedesktop/Preview/PreviewWindow.h"

#include <utility>

namespace marrowick {

FreedesktopWindows::FreedesktopWindows(std::shared_ptr<DeliveryGate> gate)
    : gate_(std::move(gate))
    , folderChooser_(gate_)
{
}

FreedesktopWindows::~FreedesktopWindows() = default;

std::unique_ptr<InfoPanel> FreedesktopWindows::makeInfoPanel(InfoPanelHandlers handlers)
{
    return std::make_unique<InfoPanelWindow>(std::move(handlers));
}

std::unique_ptr<PreferencesWindow> FreedesktopWindows::makePreferencesWindow(
    PreferencesLayout const& layout, PreferencesHandlers handlers)
{
    return std::make_unique<SettingsWindow>(layout, std::move(handlers));
}

PreviewPanel* FreedesktopWindows::previewPanel()
{
    if (!previewPanel_)
        previewPanel_ = std::make_unique<PreviewWindow>(gate_);
    return previewPanel_.get();
}

void FreedesktopWindows::chooseFolder(FileURL const& startingIn, std::function<void(std::optional<FileURL>)> done)
{
    folderChooser_.choose(startingIn, std::move(done));
}

}
