// Writes snapshots of many sizes to one file, one after the other, in a process of its own that a test may disturb or
// kill: `replacing-program FILE COUNT`. Each has one root, whose name tells how many folders are in it.

#include "Freedesktop/Files/FreedesktopFileContents.h"
#include "Support/ExchangeCoding.h"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace marrowick {

namespace {

constexpr int sizes = 40;
constexpr int step = 50;

std::string snapshotOf(int folders)
{
    Snapshot snapshot;
    auto& root = snapshot.roots.emplace_back(SnapshotNode { std::to_string(folders), "/root", {} });
    for (int number = 0; number < folders; ++number) {
        auto const name = "A folder " + std::to_string(number);
        root.children.push_back({ name, "/root/" + name, {} });
    }
    return encode(snapshot).value_or("");
}

int run(FileURL const& file, int count)
{
    FreedesktopFileContents const contents;
    for (int number = 0; number < count; ++number) {
        auto const outcome = contents.replace(file, snapshotOf(number % sizes * step));
        if (outcome)
            continue;
        std::fprintf(stderr, "%s\n", outcome.error().message.c_str());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}

}

}

int main(int count, char** words)
{
    return count == 3 ? marrowick::run(marrowick::FileURL(words[1]), std::atoi(words[2])) : 2;
}
