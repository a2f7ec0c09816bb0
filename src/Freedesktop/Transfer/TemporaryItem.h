#pragma once

#include "Freedesktop/Files/FileDescriptor.h"

#include <string>

namespace marrowick {

/// The hidden name under which an item is made in the folder open as `folder` before it gets its own. It is removed with all
/// that it holds unless it was published.
///
/// A lock on the item, which ends with the process whatever ends that, tells one that is being made from one that was left
/// behind.
class TemporaryItem {
public:
    explicit TemporaryItem(int folder);
    ~TemporaryItem();
    TemporaryItem(TemporaryItem const&) = delete;
    TemporaryItem& operator=(TemporaryItem const&) = delete;

    char const* name() const { return name_.c_str(); }

    /// To be called as soon as something stands under the name; `item` is open on it, or -1 for what is neither file nor
    /// directory. False when another process took it for one left behind.
    bool lock(int item);

    /// Gives the item the name `name` in its folder if that is free. Returns zero, or the system's error number: EEXIST when
    /// it is taken.
    int publish(char const* name);

private:
    int folder_;
    std::string name_;
    FileDescriptor lock_ { -1 };
    bool isPublished_ = false;
};

/// Removes what transfers that were killed left in the folder open as `folder`. Where a file system has no locks, only what
/// is certain to be nobody's any more goes.
void removeStaleTemporaryItems(int folder);

}
