#pragma once

#include "Platform/FileURL.h"

#include <string>
#include <string_view>
#include <vector>

namespace marrowick {

/// A folder on the disk that is gone with its contents at the end of the test. Names are exact bytes; a step that the
/// disk refuses fails the test.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(TemporaryFolder const&) = delete;
    TemporaryFolder& operator=(TemporaryFolder const&) = delete;

    FileURL const& url() const { return url_; }
    /// The location of `name`, which may hold slashes.
    FileURL operator/(std::string_view name) const { return url_.appendingPathComponent(name); }

    FileURL file(std::string_view name, std::string_view content = {}) const;
    /// Makes what is missing above it too.
    FileURL folder(std::string_view name) const;
    FileURL link(std::string_view name, std::string const& target) const;
    FileURL fifo(std::string_view name) const;
    /// The modification date of the item itself, in seconds since 1970.
    void setModified(std::string_view name, long seconds) const;
    void remove(std::string_view name) const;

    /// The whole content of a file, links followed.
    std::string content(std::string_view name) const;
    std::string linkTarget(std::string_view name) const;
    /// The names in a folder in byte order, hidden ones too.
    std::vector<std::string> names(std::string_view name) const;

private:
    FileURL url_;
};

}
