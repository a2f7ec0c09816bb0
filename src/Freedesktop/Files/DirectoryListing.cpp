#include "Freedesktop/Files/DirectoryListing.h"

#include "Freedesktop/Files/DirectoryEntries.h"
#include "Freedesktop/Files/FileDescriptor.h"
#include "Freedesktop/Files/FileErrors.h"
#include "Freedesktop/Files/HiddenNames.h"
#include "Freedesktop/Files/ItemValues.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <thread>

namespace marrowick {

namespace {

constexpr char what[] = "Could not list the folder";

/// Starting a thread takes as long as asking for some dozens of dates.
constexpr std::size_t fewestItemsForThread = 1000;

constexpr std::size_t itemsTakenAtOnce = 128;

class DirectoryReader {
public:
    DirectoryReader(int directory, std::string const& path, ResourceKeys keys, HiddenItems hidden)
        : directory_(directory)
        , prefix_(path.back() == '/' ? path : path + '/')
        , keys_(keys)
        , hidden_(hidden)
    {
    }

    /// Makes room for what a folder of this size in bytes may hold, so that the list need not move while it grows: an
    /// entry takes 20 bytes at least, and room that stays unused costs nothing.
    void reserveForSize(off_t size)
    {
        constexpr off_t mostEntries = 64 * 1024;
        items_.reserve(static_cast<std::size_t>(std::clamp<off_t>(size / 20, 0, mostEntries)));
    }

    /// Zero, or the number of the error that ended the reading.
    int read()
    {
        return visitEntries(directory_, [this](dirent64 const& entry) { add(entry.d_name, entry.d_type); });
    }

    /// Reads the values of the items read so far; where each of many costs a system call, on two threads. Both take the
    /// next items that nobody has taken, so that neither waits long for one that the machine keeps from running.
    void readValues()
    {
        std::atomic<std::size_t> next = 0;
        auto const takeItems = [&] {
            for (std::size_t begin; (begin = next.fetch_add(itemsTakenAtOnce)) < items_.size();)
                readValues(begin, std::min(begin + itemsTakenAtOnce, items_.size()));
        };
        std::thread helper;
        if (items_.size() >= fewestItemsForThread && keys_.contains(ResourceKey::contentModificationDate)) {
            try {
                helper = std::thread(takeItems);
            } catch (std::system_error const&) {
                // There is no other thread to be had, so this one does all.
            }
        }
        takeItems();
        if (helper.joinable())
            helper.join();
    }

    std::vector<ListedItem> takeItems()
    {
        if (hasHiddenNamesFile_) {
            HiddenNames const hidden(directory_);
            std::erase_if(
                items_, [&](ListedItem const& item) { return hidden.contains(item.url.lastPathComponent()); });
        }
        return std::move(items_);
    }

private:
    void add(char const* name, unsigned char type)
    {
        if (name[0] == '.' && !acceptsDotName(name))
            return;
        auto const kind = itemKindOfEntry(type);
        auto const length = std::strlen(name);
        std::string path;
        path.reserve(prefix_.size() + length);
        path.append(prefix_).append(name, length);
        items_.push_back({ FileURL(std::move(path), kind == ItemKind::directory), {} });
        kinds_.push_back(kind);
    }

    void readValues(std::size_t begin, std::size_t end)
    {
        for (auto index = begin; index < end; ++index) {
            auto& item = items_[index];
            auto const& path = item.url.path();
            // The name is the end of the path, so a zero byte follows it.
            item.values = readResourceValues({ directory_, path.c_str() + prefix_.size(), path }, kinds_[index], keys_);
            if (kinds_[index] == ItemKind::unknown && item.values.isDirectory == true)
                item.url = FileURL(path, true);
        }
    }

    bool acceptsDotName(char const* name)
    {
        if (hidden_ == HiddenItems::included)
            return !isDotOrDotDot(name);
        if (std::strcmp(name, hiddenNamesFile) == 0)
            hasHiddenNamesFile_ = true;
        return false;
    }

    int directory_;
    std::string prefix_;
    ResourceKeys keys_;
    HiddenItems hidden_;
    bool hasHiddenNamesFile_ = false;
    std::vector<ListedItem> items_;
    std::vector<ItemKind> kinds_;
};

/// Keeps of a directory nothing but the names of its visible folders.
class FolderNamesReader {
public:
    explicit FolderNamesReader(int directory)
        : directory_(directory)
    {
        // As many as most folders have.
        names_.reserve(16);
    }

    /// Zero, or the number of the error that ended the reading.
    int read()
    {
        return visitEntries(directory_, [this](dirent64 const& entry) {
            std::string_view const name(entry.d_name);
            if (name.starts_with('.'))
                hasHiddenNamesFile_ = hasHiddenNamesFile_ || name == hiddenNamesFile;
            else if ((entry.d_type == DT_DIR || isFolder(entry)) && !isPackageName(name))
                names_.emplace_back(name);
        });
    }

    std::vector<std::string> takeNames()
    {
        if (hasHiddenNamesFile_) {
            HiddenNames const hidden(directory_);
            std::erase_if(names_, [&](std::string const& name) { return hidden.contains(name); });
        }
        return std::move(names_);
    }

private:
    bool isFolder(dirent64 const& entry) const
    {
        auto const kind = itemKindOfEntry(entry.d_type);
        if (kind != ItemKind::unknown)
            return kind == ItemKind::directory;
        std::string const name(entry.d_name);
        return readResourceValues({ directory_, name.c_str(), name }, kind, ResourceKey::isDirectory)
            .isDirectory.value_or(false);
    }

    int directory_;
    bool hasHiddenNamesFile_ = false;
    std::vector<std::string> names_;
};

FileDescriptor openForListing(int above, char const* name)
{
    return FileDescriptor(::openat(above, name, O_RDONLY | O_DIRECTORY | O_NONBLOCK | O_CLOEXEC));
}

/// Not open, with the reason in `errno`, when it cannot be.
FileDescriptor openForListing(FileURL const& directory)
{
    if (!isSystemPath(directory) || directory.path().empty()) {
        errno = ENOENT;
        return FileDescriptor(-1);
    }
    return openForListing(AT_FDCWD, directory.path().c_str());
}

class OpenDirectory final : public WalkedDirectory {
public:
    /// Right after the directory was opened, since `errno` tells why it is not open.
    OpenDirectory(FileDescriptor directory, std::string name)
        : directory_(std::move(directory))
        , openingError_(directory_.isOpen() ? 0 : errno)
        , name_(std::move(name))
    {
    }

    Result<std::vector<std::string>> namesOfFolders() const override
    {
        if (openingError_ != 0)
            return fileError(openingError_, what, FileURL(name_));
        FolderNamesReader reader(directory_.get());
        if (int const number = reader.read())
            return fileError(number, what, FileURL(name_));
        return reader.takeNames();
    }

    std::unique_ptr<WalkedDirectory> folder(std::string const& name) const override
    {
        return std::make_unique<OpenDirectory>(openForListing(directory_.get(), name.c_str()), name);
    }

private:
    FileDescriptor directory_;
    int openingError_;
    std::string name_;
};

}

Result<std::vector<ListedItem>> listDirectory(FileURL const& directory, ResourceKeys keys, HiddenItems hidden)
{
    FileDescriptor const open(openForListing(directory));
    if (!open.isOpen())
        return fileError(errno, what, directory);
    DirectoryReader reader(open.get(), directory.path(), keys, hidden);
    if (struct stat status {}; ::fstat(open.get(), &status) == 0)
        reader.reserveForSize(status.st_size);
    if (int const number = reader.read())
        return fileError(number, what, directory);
    reader.readValues();
    return reader.takeItems();
}

std::unique_ptr<WalkedDirectory> walkDirectory(FileURL const& directory)
{
    return std::make_unique<OpenDirectory>(openForListing(directory), std::string(directory.lastPathComponent()));
}

Result<void> visitNamesInDirectory(FileURL const& directory, std::function<void(std::string_view)> const& visit)
{
    FileDescriptor const open(openForListing(directory));
    if (!open.isOpen())
        return fileError(errno, what, directory);
    int const number = visitEntries(open.get(), [&](dirent64 const& entry) {
        if (!isDotOrDotDot(entry.d_name))
            visit(entry.d_name);
    });
    if (number != 0)
        return fileError(number, what, directory);
    return {};
}

}
