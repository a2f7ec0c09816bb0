#pragma once

#include "Platform/Clock.h"

namespace marrowick {

class SystemClock final : public Clock {
public:
    FileTime now() const override
    {
        return std::chrono::time_point_cast<FileTime::duration>(std::chrono::system_clock::now());
    }
};

}
