// One transfer in a process of its own that a test may disturb or kill.

#include "Freedesktop/Transfer/FreedesktopFileTransfer.h"

#include <cstdio>
#include <string>

namespace marrowick {

namespace {

int outcomeOf(Result<void> const& result)
{
    if (result)
        return 0;
    std::fprintf(stderr, "%s\n", result.error().message.c_str());
    return 1;
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
    return 2;
}

}

}

int main(int count, char** words)
{
    return marrowick::run(count, words);
}
