#pragma once

#include "Platform/FileURL.h"
#include "Platform/Result.h"

#include <cstddef>
#include <string>

namespace marrowick {

/// Reads the content of files. Any thread.
class FileContents {
public:
    virtual ~FileContents() = default;

    /// The whole content of a regular file, links followed. Everything else (a directory, a FIFO, a device) is
    /// `notRegularFile` and is not waited for; a file that holds more than `limit` bytes, however much it grows
    /// meanwhile, is `tooLarge`.
    virtual Result<std::string> read(FileURL const& url, std::size_t limit) const = 0;
};

}
