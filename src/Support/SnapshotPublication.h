#pragma once

#include "Platform/Clock.h"
#include "Platform/Collation.h"
#include "Platform/FileContents.h"
#include "Platform/FileManager.h"
#include "Platform/FileURL.h"
#include "Support/SnapshotWalk.h"

#include <vector>

namespace marrowick {

/// The part of publishing a snapshot that takes long: the walk through the folders, and writing what it finds. It carries all
/// that it needs, so that any thread can run it, several at a time; what cannot be written stays as it was.
struct SnapshotPublication {
    std::vector<TopLevelFolder> folders;
    FileURL supportDir;
    FileURL snapshotURL;
    FileManager const* fileManager;
    FileContents const* fileContents;
    Collation const* collation;
    Clock const* clock;

    void operator()() const;
};

}
