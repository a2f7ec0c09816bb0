#pragma once

#include "Platform/FileURL.h"
#include "Platform/Result.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace marrowick {

/// Reads and replaces the content of files. Any thread.
class FileContents {
public:
    virtual ~FileContents() = default;

    /// The whole content of a regular file, links followed. Everything else (a directory, a FIFO, a device) is
    /// `notRegularFile` and is not waited for; a file that holds more than `limit` bytes, however much it grows
    /// meanwhile, is `tooLarge`.
    virtual Result<std::string> read(FileURL const& url, std::size_t limit) const = 0;

    /// At most the first `count` bytes of a regular file, by the same rules.
    virtual Result<std::string> readBeginning(FileURL const& url, std::size_t count) const = 0;

    /// The same as `read`, but a link at `url` is no regular file.
    virtual Result<std::string> readUnlessLink(FileURL const& url, std::size_t limit) const = 0;

    /// Puts `content` in the place of the file at `url`, or makes it where there is none, by one rename within its folder:
    /// whoever opens the file finds the old content or the new one, whole. After a failure the old one stands there.
    virtual Result<void> replace(FileURL const& url, std::string_view content) const = 0;
};

}
