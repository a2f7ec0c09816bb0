#include "Freedesktop/Files/DirectoryListing.h"

#include "Freedesktop/Files/DirectoryEntries.h"
#include "Freedesktop/Files/FileDescriptor.h"
#include "Freedesktop/Files/FileErrors.h"
#include "Freedesktop/Files/FolderWays.h"
#include "Freedesktop/Files/HiddenNames.h"
#include "Freedesktop/Files/ItemValues.h"
#include "Freedesktop/Files/TimelyAnswers.h"

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
        , ways_(FolderWays::of(directory))
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
            item.values = readResourceValues(
                { directory_, path.c_str() + prefix_.size(), path, ways_.areHarmless() ? nullptr : &ways_ },
                kinds_[index], keys_);
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
    FolderWays ways_;
    std::string prefix_;
    ResourceKeys keys_;
    HiddenItems hidden_;
    bool hasHiddenNamesFile_ = false;
    std::vector<ListedItem> items_;
    std::vector<ItemKind> kinds_;
};

/// Adds the names of a directory's visible folders to a list, and nothing of all else.
class FolderNamesReader {
public:
    FolderNamesReader(int directory, FolderWays const& ways, NameList& names)
        : directory_(directory)
        , ways_(ways)
        , names_(names)
        , first_(names.size())
    {
    }

    /// Zero, or the number of the error that ended the reading.
    int read()
    {
        int const error = visitEntries(directory_, [this](dirent64 const& entry) {
            std::string_view const name(entry.d_name);
            // Most names of folders have no dot, and a walk through many feels each call.
            if (name.starts_with('.'))
                hasHiddenNamesFile_ = hasHiddenNamesFile_ || name == hiddenNamesFile;
            else if ((entry.d_type == DT_DIR || isFolder(entry))
                && !(name.find('.') != std::string_view::npos && isPackageName(name)))
                names_.add(name);
        });
        if (error == 0 && hasHiddenNamesFile_) {
            HiddenNames const hidden(directory_);
            names_.removeIf(first_, [&](std::string_view name) { return hidden.contains(name); });
        }
        return error;
    }

private:
    bool isFolder(dirent64 const& entry) const
    {
        auto const kind = itemKindOfEntry(entry.d_type);
        if (kind != ItemKind::unknown)
            return kind == ItemKind::directory;
        std::string const name(entry.d_name);
        return readResourceValues(
            { directory_, name.c_str(), name, ways_.areHarmless() ? nullptr : &ways_ }, kind, ResourceKey::isDirectory)
            .isDirectory.value_or(false);
    }

    int directory_;
    FolderWays const& ways_;
    NameList& names_;
    std::size_t first_;
    bool hasHiddenNamesFile_ = false;
};

struct Opened {
    FileDescriptor directory;
    /// Why it is not open, or zero.
    int error = 0;
};

Opened openForListing(int above, char const* name)
{
    FileDescriptor directory(::openat(above, name, O_RDONLY | O_DIRECTORY | O_NONBLOCK | O_CLOEXEC));
    int const error = directory.isOpen() ? 0 : errno;
    return { std::move(directory), error };
}

Opened notOpened(int error)
{
    return { FileDescriptor(-1), error };
}

/// Whether the volume tells in time what the directory holds, at least how that begins.
bool isToldInTime(std::string const& volume, std::string const& path)
{
    auto const readBeginning = [path] {
        auto const opened = openForListing(AT_FDCWD, path.c_str());
        char entries[4096];
        return opened.directory.isOpen() ? ::getdents64(opened.directory.get(), entries, sizeof entries) : -1;
    };
    return answerInTime(volume, patienceForListing, readBeginning).has_value();
}

Opened openForListing(FileURL const& directory)
{
    auto const& path = directory.path();
    if (!isSystemPath(directory) || path.empty())
        return notOpened(ENOENT);
    auto const volume = volumeEntered(path);
    return volume && !isToldInTime(*volume, path) ? notOpened(ETIMEDOUT) : openForListing(AT_FDCWD, path.c_str());
}

/// A directory in the one that is open as `above` and whose ways these are.
Opened openForListing(int above, FolderWays const& ways, std::string const& name)
{
    auto const volume = ways.volumeAt(name);
    bool const isTold = !volume || isToldInTime(*volume, ways.pathOf(name));
    return isTold ? openForListing(above, name.c_str()) : notOpened(ETIMEDOUT);
}

class OpenDirectory final : public WalkedDirectory {
public:
    OpenDirectory(Opened opened, FolderWays ways, std::string name)
        : opened_(std::move(opened))
        , ways_(std::move(ways))
        , name_(std::move(name))
    {
    }

    Result<void> addNamesOfFolders(NameList& names) const override
    {
        if (opened_.error != 0)
            return fileError(opened_.error, what, FileURL(name_));
        if (int const number = FolderNamesReader(opened_.directory.get(), ways_, names).read())
            return fileError(number, what, FileURL(name_));
        return {};
    }

    std::unique_ptr<WalkedDirectory> folder(std::string_view name) const override
    {
        std::string text(name);
        auto opened = openForListing(opened_.directory.get(), ways_, text);
        return std::make_unique<OpenDirectory>(std::move(opened), ways_.below(name), std::move(text));
    }

private:
    Opened opened_;
    FolderWays ways_;
    std::string name_;
};

}

Result<std::vector<ListedItem>> listDirectory(FileURL const& directory, ResourceKeys keys, HiddenItems hidden)
{
    auto const [open, error] = openForListing(directory);
    if (error != 0)
        return fileError(error, what, directory);
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
    auto opened = openForListing(directory);
    auto ways = opened.error == 0 ? FolderWays::of(opened.directory.get()) : FolderWays();
    return std::make_unique<OpenDirectory>(
        std::move(opened), std::move(ways), std::string(directory.lastPathComponent()));
}

Result<void> visitNamesInDirectory(FileURL const& directory, std::function<void(std::string_view)> const& visit)
{
    auto const [open, error] = openForListing(directory);
    if (error != 0)
        return fileError(error, what, directory);
    int const number = visitEntries(open.get(), [&](dirent64 const& entry) {
        if (!isDotOrDotDot(entry.d_name))
            visit(entry.d_name);
    });
    if (number != 0)
        return fileError(number, what, directory);
    return {};
}

}
