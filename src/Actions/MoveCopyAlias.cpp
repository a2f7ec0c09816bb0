#include "Actions/MenuActionHandler.h"

#include "Platform/Platform.h"
#include "Support/FinderBridge.h"

#include <iterator>
#include <string>

namespace marrowick {

namespace {

std::string quoted(FileURL const& url)
{
    return "“" + std::string(url.lastPathComponent()) + "”";
}

std::string joinedNames(std::vector<FileURL> const& items)
{
    std::string names;
    for (auto const& item : items) {
        if (&item != &items.front())
            names += ", ";
        names += item.lastPathComponent();
    }
    return names;
}

/// Whether `item` lies below `folder`, however its path leads there; true where that cannot be told.
bool isBelow(FileURL const& item, FileURL const& folder)
{
    auto const& fileManager = *platform().fileManager;
    auto const identity = fileManager.identity(folder);
    auto const parent = fileManager.resolvingAlias(item.deletingLastPathComponent());
    if (!identity || !parent)
        return true;
    for (auto above = parent.value();; above = above.deletingLastPathComponent()) {
        if (auto const found = fileManager.identity(above); found && found->isSameItem(*identity))
            return true;
        if (above == above.deletingLastPathComponent())
            return false;
    }
}

/// Asks when something of the name of `item` stands in the folder, and takes it away when it is to be replaced. False when
/// nothing is to be done.
bool makeRoom(FileURL const& item, FileURL const& destinationFolder)
{
    auto const target = destinationFolder.appendingPathComponent(item.lastPathComponent());
    // The root has no name that anything else could have.
    if (target == destinationFolder || !platform().fileManager->fileExists(target))
        return true;
    Alert const question {
        .style = AlertStyle::warning,
        .messageText = quoted(target) + " already exists in " + quoted(destinationFolder) + ".",
        .informativeText = "Do you want to replace it?",
        .buttons = { "Replace", "Cancel" },
    };
    if (platform().alerts->runModal(question) != 0)
        return false;
    // What could not be removed keeps its name, and the item gets a numbered one. A folder that holds the item would take
    // it along.
    if (!isBelow(item, target))
        static_cast<void>(platform().fileTransfer->removeItem(target));
    return true;
}

Result<void> transfer(FileURL const& item, FileURL const& destinationFolder, TransferMode mode)
{
    switch (mode) {
    case TransferMode::move:
        return FinderBridge::moveItem(item, destinationFolder);
    case TransferMode::copy:
        return FinderBridge::copyItem(item, destinationFolder);
    case TransferMode::alias:
        return FinderBridge::aliasItem(item, destinationFolder);
    }
    return {};
}

}

void MenuActionHandler::presentMoveCopyAliasDialog(std::vector<FileURL> const& items, FileURL const& destination)
{
    static constexpr TransferMode modes[] { TransferMode::move, TransferMode::copy, TransferMode::alias };
    Alert const question {
        .style = AlertStyle::warning,
        .messageText = "Move, copy, or alias?",
        .informativeText = "Put " + joinedNames(items) + " into " + quoted(destination) + ".",
        .buttons = { "Move", "Copy", "Alias", "Cancel" },
    };
    auto const answer = platform().alerts->runModal(question);
    if (answer >= std::size(modes))
        return;
    for (auto const& item : items)
        performCopy(item, destination, modes[answer]);
}

void MenuActionHandler::performCopy(FileURL const& item, FileURL const& destinationFolder, TransferMode mode)
{
    if (!makeRoom(item, destinationFolder))
        return;
    if (auto const outcome = transfer(item, destinationFolder, mode); !outcome)
        platform().alerts->runModal(outcome.error());
}

}
