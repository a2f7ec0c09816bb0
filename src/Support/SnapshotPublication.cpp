#include "Support/SnapshotPublication.h"

#include "Support/ExchangeCoding.h"

#include <memory_resource>
#include <utility>

namespace marrowick {

void SnapshotPublication::operator()() const
{
    std::pmr::monotonic_buffer_resource memory(std::pmr::new_delete_resource());
    auto roots = SnapshotWalk(*fileManager, *collation, &memory).roots(folders);
    Snapshot const snapshot { clock->now(), std::move(roots) };
    auto const bytes = encode(snapshot);
    if (!bytes)
        return;
    // Where the folder is missing the file cannot be written either.
    static_cast<void>(fileManager->createDirectory(supportDir));
    static_cast<void>(fileContents->replace(snapshotURL, *bytes));
}

}
