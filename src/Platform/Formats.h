#pragma once

#include "Platform/FileManager.h"

#include <cstdint>
#include <string>

namespace marrowick {

/// Writes values as the user is used to read them. Main thread only.
class Formats {
public:
    virtual ~Formats() = default;

    /// A number of bytes as the file managers show it.
    virtual std::string fileSize(std::uint64_t bytes) const = 0;

    /// A date of medium length with a short time, in the user's locale and time zone.
    virtual std::string dateAndTime(FileTime time) const = 0;
};

}
