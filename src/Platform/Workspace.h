#pragma once

#include "Platform/FileURL.h"
#include "Platform/RunningApplication.h"
#include "Platform/Subscription.h"

#include <functional>
#include <memory>
#include <vector>

namespace marrowick {

/// Opens and reveals files, and knows which applications run. Every call is made on the main thread.
class Workspace {
public:
    virtual ~Workspace() = default;

    /// Opens `url` in its default application, starts it when it is an application itself, shows it when it is a
    /// folder. Returns before it is open; a failure stays silent.
    virtual void open(FileURL const& url) = 0;

    /// Shows `urls` in the file manager, selected in their folders. Returns before they are shown; a failure stays
    /// silent.
    virtual void activateFileViewerSelecting(std::vector<FileURL> const& urls) = 0;

    /// The applications that have windows, in the order in which they were started.
    virtual std::vector<std::shared_ptr<RunningApplication>> runningApplications() = 0;

    /// Calls `handler` each time another application becomes the active one; with null where the desktop does not say
    /// which.
    virtual Subscription observeActivation(std::function<void(std::shared_ptr<RunningApplication>)> handler) = 0;
};

}
