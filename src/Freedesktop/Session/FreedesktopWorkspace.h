#pragma once

#include "Freedesktop/Session/FileManagerService.h"
#include "Freedesktop/Session/FileOpener.h"
#include "Freedesktop/Session/Launcher.h"
#include "Freedesktop/Session/RunningApplications.h"
#include "Platform/Workspace.h"

#include <memory>
#include <string>

namespace marrowick {

class FreedesktopWorkspace : public Workspace {
public:
    /// `ownIdentifier` is what `Application::bundleIdentifier` answers.
    FreedesktopWorkspace(std::shared_ptr<XConnection> connection, std::string ownIdentifier);

    void open(FileURL const& url) override;
    void activateFileViewerSelecting(std::vector<FileURL> const& urls) override;
    std::vector<std::shared_ptr<RunningApplication>> runningApplications() override;
    Subscription observeActivation(std::function<void(std::shared_ptr<RunningApplication>)> handler) override;

private:
    Launcher launcher_;
    FileOpener opener_;
    FileManagerService fileManager_;
    RunningApplications runningApplications_;
};

}
