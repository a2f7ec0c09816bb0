// How requests of the extension are taken and carried out.

#include "Support/FinderSyncBridge.h"

#include "Platform/Platform.h"
#include "Support/ExchangeCoding.h"
#include "Support/FinderBridge.h"
#include "Support/RequestRules.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

namespace marrowick {

namespace {

constexpr std::size_t largestFile = std::size_t { 64 } * 1024 * 1024;

bool exists(std::string const& path)
{
    return path.starts_with('/') && platform().fileManager->fileExists(FileURL(path));
}

Result<void> transfer(FileURL const& item, FileURL const& destination, TransferMode mode)
{
    switch (mode) {
    case TransferMode::move:
        return FinderBridge::moveItem(item, destination);
    case TransferMode::copy:
        return FinderBridge::copyItem(item, destination);
    case TransferMode::alias:
        return FinderBridge::aliasItem(item, destination);
    }
    return {};
}

/// Asks the user; absent where nothing is to be done.
std::optional<TransferMode> ask(MoveRequest const& request, FileURL const& destination)
{
    assertMainThread();
    auto const question = RequestRules::question(request, destination);
    platform().application->activate();
    return RequestRules::mode(platform().alerts->runModal(question));
}

/// More lines than anybody reads.
constexpr std::size_t mostLines = 10'000;

/// Puts every item that is there into `destination`; what is to be told of it, in order.
std::vector<std::string> transferAll(
    std::vector<std::string> const& sources, FileURL const& destination, TransferMode mode)
{
    std::vector<std::string> report;
    auto const add = [&](std::string line) {
        if (report.size() < mostLines)
            report.push_back(std::move(line));
        else
            report.back() = "…";
    };
    for (auto const& source : sources) {
        if (!exists(source))
            continue;
        FileURL const item(source);
        switch (RequestRules::verdict(item, destination, mode)) {
        case ItemVerdict::skip:
            break;
        case ItemVerdict::refuse:
            add(RequestRules::refusal(item));
            break;
        case ItemVerdict::transfer:
            if (auto const outcome = transfer(item, destination, mode); !outcome)
                add(RequestRules::failure(item, outcome.error().message));
            break;
        }
    }
    return report;
}

}

void FinderSyncBridge::processPendingRequests()
{
    assertMainThread();
    auto const listing
        = platform().fileManager->contentsOfDirectory(requestsDir_, ResourceKey::isRegularFile, HiddenItems::included);
    if (!listing)
        return;
    forgetConsumed(listing.value());
    for (auto const& entry : listing.value()) {
        // What nobody can be asked about any longer waits for the next start.
        if (platform().application->isTerminating())
            return;
        if (entry.url.pathExtension() == "json" && entry.values.isRegularFile.value_or(false))
            takeRequest(entry.url);
    }
}

void FinderSyncBridge::takeRequest(FileURL const& file)
{
    auto const identity = platform().fileManager->identity(file);
    auto const isThisFile = [&](FileIdentity const& other) { return identity && other.isSameItem(*identity); };
    if (std::any_of(consumed_.begin(), consumed_.end(), isThisFile))
        return;
    auto const content = platform().fileContents->readUnlessLink(file, largestFile);
    // What has taken the file's place since the folder was listed.
    if (!content && content.error().kind == ErrorKind::notRegularFile)
        return;
    // A file that is gone leaves its number to one that comes after it.
    auto const removal = platform().fileManager->removeFile(file);
    if (!removal && removal.error().kind != ErrorKind::notFound && identity)
        consumed_.push_back(*identity);
    auto const request = content ? decodeMoveRequest(content.value()) : std::nullopt;
    if (request)
        perform(*request);
}

void FinderSyncBridge::forgetConsumed(std::vector<ListedItem> const& present)
{
    if (consumed_.empty())
        return;
    std::vector<FileIdentity> identities;
    for (auto const& item : present) {
        if (auto const identity = platform().fileManager->identity(item.url))
            identities.push_back(*identity);
    }
    std::erase_if(consumed_, [&](FileIdentity const& gone) {
        return std::none_of(identities.begin(), identities.end(),
            [&](FileIdentity const& identity) { return identity.isSameItem(gone); });
    });
}

void FinderSyncBridge::perform(MoveRequest const& request)
{
    if (!RequestRules::isAllowed(request.op))
        return;
    auto const bytes = platform().fileContents->read(snapshotURL_, largestFile);
    if (!bytes)
        return;
    auto const snapshot = decodeSnapshot(bytes.value());
    if (!snapshot || !snapshot->allPaths().contains(request.dest)) {
        platform().log->write("Marrowick: ignoring request for unknown destination " + request.dest);
        return;
    }
    FileURL const destination(request.dest, true);
    auto const mode = request.op == "ask" ? ask(request, destination) : RequestRules::mode(request.op);
    if (!mode)
        return;
    if (auto const report = transferAll(request.sources, destination, *mode); !report.empty()) {
        auto const alert = RequestRules::report(*mode, report);
        platform().application->activate();
        platform().alerts->runModal(alert);
    }
}

}
