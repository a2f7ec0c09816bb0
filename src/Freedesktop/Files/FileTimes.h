#pragma once

#include "Platform/FileManager.h"

#include <limits>

namespace marrowick {

/// A time of the file system (a `timespec` or a `statx_timestamp`); one that `FileTime` cannot hold is the nearest that
/// it can.
template<typename Timestamp>
FileTime fileTime(Timestamp const& timestamp)
{
    constexpr std::int64_t perSecond = 1'000'000'000;
    constexpr auto lastSecond = std::numeric_limits<std::int64_t>::max() / perSecond - 1;
    if (timestamp.tv_sec > lastSecond)
        return FileTime::max();
    if (timestamp.tv_sec < -lastSecond)
        return FileTime::min();
    return FileTime(std::chrono::nanoseconds(timestamp.tv_sec * perSecond + timestamp.tv_nsec));
}

}
