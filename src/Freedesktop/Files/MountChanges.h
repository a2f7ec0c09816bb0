#pragma once

#include "Freedesktop/Files/FileDescriptor.h"

namespace marrowick {

/// The system's mount table as the kernel tells it.
inline constexpr char mountTableFile[] = "/proc/self/mountinfo";

/// Tells whether anything was mounted or unmounted since the last question, for less than reading the table costs.
class MountChanges {
public:
    MountChanges();

    /// To be asked before the table is read: what comes while it is read is a change the next time. True, too, when it
    /// cannot be told.
    bool haveCome();

private:
    FileDescriptor table_;
};

}
