#include "Support/SnapshotPublication.h"

#include "Support/ExchangeCoding.h"

namespace marrowick {

void SnapshotPublication::operator()() const
{
    Snapshot snapshot;
    snapshot.roots = SnapshotWalk(*fileManager, *collation).roots(folders);
    snapshot.generated = clock->now();
    auto const bytes = encode(snapshot);
    if (!bytes)
        return;
    // Where the folder is missing the file cannot be written either.
    static_cast<void>(fileManager->createDirectory(supportDir));
    static_cast<void>(fileContents->replace(snapshotURL, *bytes));
}

}
