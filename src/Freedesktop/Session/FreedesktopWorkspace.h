#pragma once

#include "Freedesktop/DeliveryGate.h"
#include "Freedesktop/Session/FileManagerService.h"
#include "Freedesktop/Session/FileOpener.h"
#include "Freedesktop/Session/InstalledApplications.h"
#include "Freedesktop/Session/Launcher.h"
#include "Freedesktop/Session/RunningApplications.h"
#include "Freedesktop/Session/Trash.h"
#include "Platform/Workspace.h"

#include <memory>
#include <string>

namespace marrowick {

class FreedesktopWorkspace : public Workspace {
public:
    /// What the desktop tells comes through `gate`. `ownIdentifier` is what `Application::bundleIdentifier` answers.
    FreedesktopWorkspace(
        std::shared_ptr<XConnection> connection, std::shared_ptr<DeliveryGate> gate, std::string ownIdentifier);

    void open(FileURL const& url) override;
    void activateFileViewerSelecting(std::vector<FileURL> const& urls) override;
    void open(std::vector<FileURL> const& urls, FileURL const& withApplication) override;
    void selectFile(FileURL const& path) override;
    void recycle(std::vector<FileURL> const& urls, std::function<void(std::optional<Error>)> done) override;
    std::vector<std::shared_ptr<RunningApplication>> runningApplications(BackgroundOnly backgroundOnly) override;
    std::vector<InstalledItem> additionalApplications() override;
    std::vector<InstalledItem> additionalPreferencePanes() override;
    Subscription observeActivation(std::function<void(std::shared_ptr<RunningApplication>)> handler) override;

private:
    std::shared_ptr<DeliveryGate> gate_;
    DesktopEntries entries_;
    Launcher launcher_;
    FileOpener opener_;
    FileManagerService fileManager_;
    Trash trash_;
    RunningApplications runningApplications_;
    InstalledApplications installedApplications_;
};

}
