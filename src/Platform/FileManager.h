#pragma once

#include "Platform/FileURL.h"
#include "Platform/NameList.h"
#include "Platform/Result.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace marrowick {

using FileTime = std::chrono::time_point<std::chrono::system_clock, std::chrono::nanoseconds>;

/// What is asked of an item. Values that were not asked for may be absent.
enum class ResourceKey : std::uint16_t {
    isDirectory = 1,
    isAliasFile = 2,
    isApplication = 4,
    contentModificationDate = 8,
    /// Only for an alias: whether what it leads to is a directory.
    aliasTargetIsDirectory = 16,
    /// `isApplication`, but only for a directory and for an alias that leads to one: of other items it may have to be
    /// read from their content.
    directoryIsApplication = 32,
    /// Whether it is a directory that people take for one document or program.
    isPackage = 64,
    isRegularFile = 128,
    fileSize = 256,
    /// `contentModificationDate`, but not of a directory: a volume may be mounted there that does not answer.
    fileModificationDate = 512,
};

class ResourceKeys {
public:
    constexpr ResourceKeys() = default;
    constexpr ResourceKeys(ResourceKey key)
        : bits_(static_cast<std::uint16_t>(key))
    {
    }
    constexpr bool contains(ResourceKey key) const { return (bits_ & static_cast<std::uint16_t>(key)) != 0; }
    constexpr bool containsAny(ResourceKeys keys) const { return (bits_ & keys.bits_) != 0; }
    friend constexpr ResourceKeys operator|(ResourceKeys a, ResourceKeys b)
    {
        ResourceKeys both;
        both.bits_ = static_cast<std::uint16_t>(a.bits_ | b.bits_);
        return both;
    }
    constexpr ResourceKeys without(ResourceKeys other) const
    {
        ResourceKeys rest;
        rest.bits_ = static_cast<std::uint16_t>(bits_ & ~other.bits_);
        return rest;
    }

private:
    std::uint16_t bits_ = 0;
};

constexpr ResourceKeys operator|(ResourceKey a, ResourceKey b)
{
    return ResourceKeys(a) | ResourceKeys(b);
}

/// The values of one item; a value that cannot be read is absent. They are the item's own: of an alias, not of what it
/// leads to, but for `isApplication` and `aliasTargetIsDirectory`.
struct ResourceValues {
    std::optional<bool> isDirectory;
    std::optional<bool> isAliasFile;
    std::optional<bool> isApplication;
    std::optional<FileTime> contentModificationDate;
    std::optional<bool> aliasTargetIsDirectory;
    std::optional<bool> isPackage;
    std::optional<bool> isRegularFile;
    /// In bytes.
    std::optional<std::uint64_t> fileSize;
};

/// An item as a directory listing tells it.
struct ListedItem {
    FileURL url;
    ResourceValues values;
};

enum class HiddenItems : std::uint8_t {
    included,
    skipped,
};

/// Tells two names of one item from two items; it changes when the item's content is replaced or modified.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::uint64_t size = 0;
    FileTime modified;

    bool isSameItem(FileIdentity const& other) const { return device == other.device && inode == other.inode; }
};

enum class StandardDirectory : std::uint8_t {
    applicationSupport,
    desktop,
    documents,
    downloads,
};

/// A directory of a tree that is walked down. Any thread, one at a time.
class WalkedDirectory {
public:
    virtual ~WalkedDirectory() = default;

    /// Adds the names of the visible directories directly in it that are no packages, in the file system's order, as
    /// `FileManager::contentsOfDirectory` tells them; nothing is made of all other entries. An error may come after some of
    /// the names.
    virtual Result<void> addNamesOfFolders(NameList& names) const = 0;

    /// The directory called `name` in it, found from here and not from the top again. Whether it can be read is told by
    /// its own answers.
    virtual std::unique_ptr<WalkedDirectory> folder(std::string_view name) const = 0;
};

/// Reads and changes what directories hold, without opening files for their content. Any thread; nothing waits for
/// another program.
class FileManager {
public:
    virtual ~FileManager() = default;

    /// The direct contents of `directory` in the file system's order, with the values that `keys` name. Follows a link
    /// at `directory` itself. Hidden items are those whose name begins with a dot, and those that the folder's
    /// ".hidden" file names.
    virtual Result<std::vector<ListedItem>> contentsOfDirectory(
        FileURL const& directory, ResourceKeys keys, HiddenItems hidden) const = 0;

    /// Calls `visit` with the name of each direct item of `directory`, hidden ones too, in the file system's order. Follows
    /// a link at `directory` itself. An error may come after some of the names.
    virtual Result<void> visitNames(
        FileURL const& directory, std::function<void(std::string_view)> const& visit) const = 0;

    /// The top of a tree to be walked down, no longer than the file manager lives. Follows a link at `directory` itself.
    virtual std::unique_ptr<WalkedDirectory> walk(FileURL const& directory) const;

    virtual ResourceValues resourceValues(FileURL const& url, ResourceKeys keys) const = 0;

    /// Whether there is an item once links are followed; false for a dangling link.
    virtual bool fileExists(FileURL const& url) const = 0;

    /// Whether something stands at this name, a dangling link too.
    virtual bool isNameTaken(FileURL const& url) const = 0;

    /// Absent when there is no item, links followed.
    virtual std::optional<FileIdentity> identity(FileURL const& url) const = 0;

    /// Makes the directory and all that are missing above it. It is no error when it exists already.
    virtual Result<void> createDirectory(FileURL const& url) const = 0;

    /// Removes a file, or a link without what it leads to; never a directory.
    virtual Result<void> removeFile(FileURL const& url) const = 0;

    /// Where an alias leads in the end, without any link left in the path. An item that is no alias resolves too; one
    /// that dangles does not.
    virtual Result<FileURL> resolvingAlias(FileURL const& url) const = 0;

    /// The user's own directories for a purpose, best first. They need not exist.
    virtual std::vector<FileURL> urls(StandardDirectory directory) const = 0;

    virtual FileURL homeDirectory() const = 0;

    /// The roots of the volumes that a file manager shows; "/" is always among them. Absent when they cannot be told.
    virtual std::optional<std::vector<FileURL>> mountedVolumes() const = 0;
};

}
