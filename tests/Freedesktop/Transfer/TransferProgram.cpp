// One transfer, or many under free names, in a process of its own that a test may disturb or kill.

#include "Freedesktop/Files/FreedesktopFileManager.h"
#include "Freedesktop/Transfer/FreedesktopFileTransfer.h"
#include "Platform/Platform.h"
#include "Support/FinderBridge.h"

#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <utility>

namespace marrowick {

namespace {

int outcomeOf(Result<void> const& result)
{
    if (result)
        return 0;
    std::fprintf(stderr, "%s\n", result.error().message.c_str());
    return 1;
}

int dropMany(std::string const& how, FileURL const& item, FileURL const& folder, int count)
{
    Platform services;
    services.fileManager = std::make_unique<FreedesktopFileManager>();
    services.fileTransfer = std::make_unique<FreedesktopFileTransfer>();
    PlatformScope const scope(std::move(services));
    std::map<std::string, Result<void> (*)(FileURL const&, FileURL const&)> const operations {
        { "drop-move", FinderBridge::moveItem },
        { "drop-copy", FinderBridge::copyItem },
        { "drop-alias", FinderBridge::aliasItem },
    };
    auto const operation = operations.at(how);
    for (int number = 0; number < count; ++number) {
        // A move takes the item away; each one has a folder of its own.
        auto const source = how == "drop-move"
            ? item.appendingPathComponent(std::to_string(number)).appendingPathComponent("item.txt")
            : item;
        if (auto const outcome = operation(source, folder); !outcome)
            return outcomeOf(outcome);
    }
    return 0;
}

int run(int count, char** words)
{
    if (count < 3)
        return 2;
    std::string const how = words[1];
    FileURL const at(words[2]);
    FileURL const to(count > 3 ? words[3] : "");
    FreedesktopFileTransfer transfer;
    if (how == "move")
        return outcomeOf(transfer.moveItem(at, to));
    if (how == "copy")
        return outcomeOf(transfer.copyItem(at, to));
    if (how == "alias")
        return outcomeOf(transfer.createAlias(at, to));
    if (how == "remove")
        return outcomeOf(transfer.removeItem(at));
    return count > 4 ? dropMany(how, at, to, std::atoi(words[4])) : 2;
}

}

}

int main(int count, char** words)
{
    return marrowick::run(count, words);
}
