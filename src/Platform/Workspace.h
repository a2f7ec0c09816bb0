#pragma once

#include "Platform/FileURL.h"
#include "Platform/Result.h"
#include "Platform/RunningApplication.h"
#include "Platform/Subscription.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace marrowick {

/// An application or a settings pane that the desktop knows of although it lies in none of the folders that are searched.
struct InstalledItem {
    /// The file that opens it.
    FileURL url;
    /// What the desktop calls it in the user's language.
    std::string localizedName;
};

/// Whether applications that show nothing on the screen are listed too.
enum class BackgroundOnly : std::uint8_t {
    included,
    leftOut,
};

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

    /// Opens `urls` with the application that starts by `withApplication`, in one start where the application takes several
    /// files. Returns before they are open; a failure stays silent.
    virtual void open(std::vector<FileURL> const& urls, FileURL const& withApplication) = 0;

    /// Shows the item at `path` selected in a new window of the file manager.
    virtual void selectFile(FileURL const& path) = 0;

    /// Moves `urls` to the trash; `done` comes later, once, with the first error or none. Nothing is ever deleted instead.
    virtual void recycle(std::vector<FileURL> const& urls, std::function<void(std::optional<Error>)> done) = 0;

    /// The applications that run, those that have windows first, in the order in which they were started. To find those
    /// that only work in the background may take a look at every process of the system.
    virtual std::vector<std::shared_ptr<RunningApplication>> runningApplications(BackgroundOnly backgroundOnly) = 0;

    /// The applications that the desktop shows to the user, beside those in the applications folder; in no order.
    virtual std::vector<InstalledItem> additionalApplications() = 0;

    /// The panes of the desktop's settings, beside those in the folders of preference panes; in no order.
    virtual std::vector<InstalledItem> additionalPreferencePanes() = 0;

    /// Calls `handler` each time another application becomes the active one; with null where the desktop does not say
    /// which.
    virtual Subscription observeActivation(std::function<void(std::shared_ptr<RunningApplication>)> handler) = 0;
};

}
