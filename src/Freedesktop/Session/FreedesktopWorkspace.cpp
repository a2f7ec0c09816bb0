#include "Freedesktop/Session/FreedesktopWorkspace.h"

#include <algorithm>
#include <set>
#include <utility>

namespace marrowick {

FreedesktopWorkspace::FreedesktopWorkspace(
    std::shared_ptr<XConnection> connection, std::shared_ptr<DeliveryGate> gate, std::string ownIdentifier)
    : gate_(std::move(gate))
    , launcher_(connection)
    , opener_(launcher_)
    , runningApplications_(std::move(connection), gate_, entries_, std::move(ownIdentifier))
    , installedApplications_(entries_)
{
}

void FreedesktopWorkspace::open(FileURL const& url)
{
    opener_.open(url);
}

void FreedesktopWorkspace::activateFileViewerSelecting(std::vector<FileURL> const& urls)
{
    std::vector<FileURL> absolute;
    std::copy_if(urls.begin(), urls.end(), std::back_inserter(absolute),
        [](FileURL const& url) { return url.path().starts_with('/'); });
    if (absolute.empty())
        return;
    // Without a file manager on the bus the folders are opened instead, each once.
    auto const opened = std::make_shared<std::set<FileURL>>();
    fileManager_.showItems(absolute, launcher_.makeStartupID(), [this, opened](FileURL const& url) {
        auto const folder = url.deletingLastPathComponent();
        if (opened->insert(folder).second)
            launcher_.openInDefaultApplication("inode/directory", { folder.path() });
    });
}

void FreedesktopWorkspace::open(std::vector<FileURL> const& urls, FileURL const& withApplication)
{
    opener_.open(urls, withApplication);
}

void FreedesktopWorkspace::selectFile(FileURL const& path)
{
    activateFileViewerSelecting({ path });
}

void FreedesktopWorkspace::recycle(std::vector<FileURL> const& urls, std::function<void(std::optional<Error>)> done)
{
    trash_.recycle(urls, [gate = gate_, done = std::move(done)](std::optional<Error> error) {
        if (done)
            gate->deliver([done, error = std::move(error)] { done(error); });
    });
}

std::vector<std::shared_ptr<RunningApplication>> FreedesktopWorkspace::runningApplications(
    BackgroundOnly backgroundOnly)
{
    return runningApplications_.list(backgroundOnly);
}

std::vector<InstalledItem> FreedesktopWorkspace::additionalApplications()
{
    return installedApplications_.applications();
}

std::vector<InstalledItem> FreedesktopWorkspace::additionalPreferencePanes()
{
    return installedApplications_.settings();
}

Subscription FreedesktopWorkspace::observeActivation(std::function<void(std::shared_ptr<RunningApplication>)> handler)
{
    return runningApplications_.observeActivation(std::move(handler));
}

}
