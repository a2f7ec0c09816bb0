#pragma once

#include <ctime>

namespace marrowick {

/// Tells the milliseconds apart in which something may be taken as it was: the kernel's coarse clock ticks every few of
/// them, and is read without a system call.
class KernelTick {
public:
    /// Whether the clock has ticked since the last question; true for the first.
    bool hasCome()
    {
        timespec now {};
        if (::clock_gettime(CLOCK_MONOTONIC_COARSE, &now) != 0)
            return true;
        bool const isSame = now.tv_sec == last_.tv_sec && now.tv_nsec == last_.tv_nsec;
        last_ = now;
        return !isSame;
    }

private:
    timespec last_ { .tv_sec = -1, .tv_nsec = 0 };
};

}
