#pragma once

#include "Platform/FileManager.h"

namespace marrowick {

/// Tells the time. Any thread.
class Clock {
public:
    virtual ~Clock() = default;

    virtual FileTime now() const = 0;
};

}
