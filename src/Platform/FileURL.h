#pragma once

#include <compare>
#include <string>
#include <string_view>

namespace marrowick {

/// The location of a file as the exact bytes of its path, which need not be valid UTF-8. A location is absolute, except
/// where a stored setting holds a relative or an empty path, which is kept as it stands.
///
/// Trailing slashes are dropped and remembered as the directory mark; equality and order ignore that mark.
class FileURL {
public:
    FileURL() = default;

    /// A trailing slash of `path` sets the directory mark, as `isDirectory` does. Nothing else is normalised.
    explicit FileURL(std::string path, bool isDirectory = false);

    std::string const& path() const { return path_; }

    /// Whether the location was given as one of a directory. It says nothing about the disk.
    bool hasDirectoryPath() const { return isDirectory_; }

    /// The name of the item: what follows the last slash; "/" for the root and empty for the empty path.
    std::string_view lastPathComponent() const;

    /// What follows the last dot of the name; empty when there is no dot or when that dot is first or last in the name.
    std::string_view pathExtension() const;

    /// The name without its path extension and the dot before it.
    std::string_view nameWithoutExtension() const;

    /// The location of the folder that holds the item; the root for the root.
    FileURL deletingLastPathComponent() const;

    FileURL appendingPathComponent(std::string_view component, bool isDirectory = false) const;

    friend bool operator==(FileURL const& a, FileURL const& b) { return a.path_ == b.path_; }
    friend std::strong_ordering operator<=>(FileURL const& a, FileURL const& b) { return a.path_ <=> b.path_; }

private:
    std::string path_;
    bool isDirectory_ = false;
};

/// The path extension of a bare file name, by the rule of `FileURL::pathExtension`.
std::string_view pathExtensionOf(std::string_view name);

}
