#pragma once

#include "Platform/FileURL.h"
#include "Platform/Result.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace marrowick {

/// The user's trash, as all programs of the desktop share it. Nothing is ever deleted: where an item's file system has
/// no trash, the item stays. Main thread only.
class Trash {
public:
    using Done = std::function<void(std::optional<Error>)>;

    Trash();
    ~Trash();
    Trash(Trash const&) = delete;
    Trash& operator=(Trash const&) = delete;

    /// Moves the items to the trash, one after the other, also where some fail. `done` comes later, from the event loop,
    /// with the first failure or none; it does not come after the end of the object.
    void recycle(std::vector<FileURL> const& urls, Done done);

private:
    struct Job;
    struct Pending;

    void continueWith(std::shared_ptr<Job> const& job);

    /// Queued calls end with it, and answers find out that it has ended.
    std::shared_ptr<QObject> context_;
};

}
