#include "Support/FinderSyncBridge.h"

#include "Models/ItemsFolderScanner.h"
#include "Platform/Platform.h"
#include "Platform/SharedObjects.h"
#include "Support/FolderChain.h"
#include "Support/Preferences.h"
#include "Support/SnapshotPublication.h"

#include <chrono>
#include <utility>

namespace marrowick {

namespace {

constexpr std::chrono::seconds refreshInterval { 120 };

FileURL supportFolder()
{
    auto const folders = platform().fileManager->urls(StandardDirectory::applicationSupport);
    if (folders.empty())
        fatalError("Marrowick: the user has no application support folder");
    return folders.front().appendingPathComponent("Marrowick", true);
}

/// The folder itself or, of an alias, the one that it leads to.
FileURL destination(FileURL const& url)
{
    auto const& fileManager = *platform().fileManager;
    // What is no alias keeps its location, even where a link stands above it.
    if (fileManager.resourceValues(url, ResourceKey::isAliasFile).isAliasFile == false)
        return url;
    auto const resolved = fileManager.resolvingAlias(url);
    return resolved ? resolved.value() : url;
}

/// Appends the folders of a list of nodes, and those of inline folders in their place.
class FolderCollection {
public:
    explicit FolderCollection(MenuContext const& context)
        : context_(context)
    {
    }

    void appendContents(FileURL const& folder)
    {
        if (!chain_.enter(folder))
            return;
        for (auto const& node : ItemsFolderScanner::children(folder, context_, true))
            append(node);
        chain_.leave();
    }

    std::vector<TopLevelFolder> take() { return std::move(folders_); }

private:
    void append(MenuNode const& node)
    {
        switch (node.kind.value()) {
        case MenuNodeKind::Case::desktopSubmenu: {
            auto const desktops = platform().fileManager->urls(StandardDirectory::desktop);
            if (!desktops.empty())
                folders_.push_back({ node.displayName.empty() ? "Desktop" : node.displayName, desktops.front() });
            break;
        }
        case MenuNodeKind::Case::folder:
            if (node.codes.contains(SuffixCodes::inlineFolder))
                appendContents(*node.kind.url());
            else
                folders_.push_back({ node.displayName, destination(*node.kind.url()) });
            break;
        case MenuNodeKind::Case::file:
        case MenuNodeKind::Case::copyTemplateFolder:
        case MenuNodeKind::Case::divider:
        case MenuNodeKind::Case::allAppsSubmenu:
        case MenuNodeKind::Case::processesSubmenu:
        case MenuNodeKind::Case::prefPanesSubmenu:
        case MenuNodeKind::Case::recentItemsSubmenu:
            break;
        }
    }

    MenuContext const& context_;
    FolderChain chain_;
    std::vector<TopLevelFolder> folders_;
};

}

FinderSyncBridge& FinderSyncBridge::shared()
{
    return sharedObject<FinderSyncBridge>();
}

FinderSyncBridge::FinderSyncBridge()
    : supportDir_(supportFolder())
    , snapshotURL_(supportDir_.appendingPathComponent("menu-snapshot.json"))
    , requestsDir_(supportDir_.appendingPathComponent("Requests", true))
{
}

void FinderSyncBridge::start()
{
    assertMainThread();
    // Without the folder there are no requests, and nobody to tell.
    static_cast<void>(platform().fileManager->createDirectory(requestsDir_));
    refreshSnapshot();
    processPendingRequests();
    watchRequests();
    // Those that came while the first were carried out, which takes as long as the user leaves a question open.
    processPendingRequests();
    watchItemsFolder();
    refreshTimer_ = platform().dispatch->repeatingTimer(refreshInterval, [this] { refreshTimerFired(); });
}

void FinderSyncBridge::refreshSnapshot()
{
    assertMainThread();
    auto const& services = platform();
    services.dispatch->inBackground(SnapshotPublication {
        .folders = topLevelFolders(Preferences::shared().itemsFolderURL(), MenuContext {}),
        .supportDir = supportDir_,
        .snapshotURL = snapshotURL_,
        .fileManager = services.fileManager.get(),
        .fileContents = services.fileContents.get(),
        .collation = services.collation.get(),
        .clock = services.clock.get(),
    });
}

std::vector<TopLevelFolder> FinderSyncBridge::topLevelFolders(FileURL const& of, MenuContext const& context)
{
    FolderCollection collection(context);
    collection.appendContents(of);
    return collection.take();
}

FinderSyncBridge::Watch FinderSyncBridge::watch(
    FileURL const& url, std::function<void()> handler, std::function<void()> ended)
{
    auto const onMainThread = [](std::function<void()> run) {
        return [run = std::move(run)] {
            assertMainThread();
            run();
        };
    };
    auto const folder = platform().fileManager->identity(url);
    return { platform().dispatch->directoryWatch(url, onMainThread(std::move(handler)), onMainThread(std::move(ended))),
        folder };
}

bool FinderSyncBridge::isWatching(Watch const& watch, FileURL const& url)
{
    if (!watch.source.isActive() || !watch.folder)
        return false;
    auto const folder = platform().fileManager->identity(url);
    return folder && folder->isSameItem(*watch.folder);
}

void FinderSyncBridge::watchRequests()
{
    requestSource_ = {};
    requestSource_ = watch(
        requestsDir_, [this] { processPendingRequests(); }, [this] { requestSource_ = {}; });
}

void FinderSyncBridge::watchItemsFolder()
{
    assertMainThread();
    itemsSource_ = {};
    auto const folder = Preferences::shared().itemsFolderURL();
    // Every snapshot written would be a change of the folder, and every change a snapshot.
    auto const& fileManager = *platform().fileManager;
    auto const items = fileManager.identity(folder);
    auto const support = fileManager.identity(supportDir_);
    if (items && support && items->isSameItem(*support))
        return;
    itemsSource_ = watch(
        folder, [this] { refreshSnapshot(); },
        [this] {
            itemsSource_ = {};
            // The last of what was in it went with it.
            refreshSnapshot();
        });
}

void FinderSyncBridge::refreshTimerFired()
{
    assertMainThread();
    // Folders that were removed may be back, or others may stand in their place.
    if (!isWatching(itemsSource_, Preferences::shared().itemsFolderURL()))
        watchItemsFolder();
    if (!isWatching(requestSource_, requestsDir_)) {
        watchRequests();
        processPendingRequests();
    }
    refreshSnapshot();
}

}
