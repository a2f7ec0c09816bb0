#pragma once

#include "Platform/Clock.h"

namespace marrowick {

/// Stands still at the time that the test sets.
class FakeClock final : public Clock {
public:
    FileTime now() const override { return time; }

    /// 16 November 2026, 00:44:41 UTC, and a part of a second.
    FileTime time { std::chrono::seconds(1'794'789'881) + std::chrono::milliseconds(678) };
};

}
