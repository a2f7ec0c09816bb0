#pragma once

#include "Models/MenuContext.h"
#include "Platform/FileManager.h"
#include "Platform/FileURL.h"
#include "Platform/Subscription.h"
#include "Support/MoveRequest.h"
#include "Support/SnapshotWalk.h"

#include <functional>
#include <optional>
#include <vector>

namespace marrowick {

/// The exchange of files with the extension inside the file manager: a snapshot of the menu's folders for the extension to
/// read, and its requests, which are carried out. Main thread only.
class FinderSyncBridge {
public:
    static FinderSyncBridge& shared();

    FinderSyncBridge();

    /// The folder of the exchange in the user's application support. Without one the process stops.
    FileURL const& supportDir() const { return supportDir_; }
    FileURL const& snapshotURL() const { return snapshotURL_; }
    FileURL const& requestsDir() const { return requestsDir_; }

    /// Begins the exchange: publishes a snapshot, carries out the requests that are waiting, and watches for more. Called
    /// once, at launch.
    void start();

    /// Writes the snapshot anew. Returns at once; nothing is reported when it cannot be written.
    void refreshSnapshot();

    /// Watches the items folder of the settings in the place of the one watched so far.
    void watchItemsFolder();

    /// Carries out every request in the requests folder, in the listing's order, each once. A request is removed before it
    /// is looked at.
    void processPendingRequests();

    /// The folders that the menu of `of` shows at its top level, folders of inline folders in their place.
    static std::vector<TopLevelFolder> topLevelFolders(FileURL const& of, MenuContext const& context);

private:
    /// A watch, and the folder that was at its path when it began.
    struct Watch {
        Subscription source;
        std::optional<FileIdentity> folder;
    };

    static Watch watch(FileURL const& url, std::function<void()> handler, std::function<void()> ended);
    /// Whether the watch sees what happens at `url`.
    static bool isWatching(Watch const& watch, FileURL const& url);

    void watchRequests();
    void refreshTimerFired();
    void takeRequest(FileURL const& file);
    void forgetConsumed(std::vector<ListedItem> const& present);
    void perform(MoveRequest const& request);

    FileURL supportDir_;
    FileURL snapshotURL_;
    FileURL requestsDir_;
    Watch requestSource_;
    Watch itemsSource_;
    Subscription refreshTimer_;
    /// Requests that were carried out but could not be removed.
    std::vector<FileIdentity> consumed_;
};

}
