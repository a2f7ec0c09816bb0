#include "Freedesktop/Transfer/FreedesktopFileTransfer.h"

#include "Freedesktop/Files/FileDescriptor.h"
#include "Freedesktop/Files/FileErrors.h"
#include "Freedesktop/Transfer/CopiedItems.h"
#include "Freedesktop/Transfer/Renaming.h"
#include "Freedesktop/Transfer/TemporaryItem.h"
#include "Freedesktop/Transfer/TreeCopy.h"
#include "Freedesktop/Transfer/TreeRemoval.h"

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace marrowick {

namespace {

/// An item by its name in the folder that holds it, which is open.
struct Place {
    explicit Place(FileURL const& url)
        : folder(::open(url.deletingLastPathComponent().path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC))
        , openError(folder.isOpen() ? 0 : errno)
        , name(url.lastPathComponent())
    {
        // A zero byte would end the path early, at another item.
        if (!isSystemPath(url))
            openError = EINVAL;
    }

    ItemPlace item() const { return { folder.get(), name.c_str() }; }

    /// Zero where an item may get the name, as far as can be told beforehand.
    int nameError() const
    {
        struct stat status { };
        if (::fstatat(folder.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0)
            return EEXIST;
        return errno == ENAMETOOLONG ? errno : 0;
    }

    FileDescriptor folder;
    int openError;
    std::string name;
};

constexpr char couldNotMove[] = "Could not move";
constexpr char couldNotCopy[] = "Could not copy";
constexpr char couldNotRemoveOriginal[] = "The copy is complete. Could not remove";

Error alreadyExists(FileURL const& to)
{
    return { ErrorKind::alreadyExists, quotedName(to) + " exists already." };
}

Error intoItself(std::string_view what, FileURL const& item)
{
    return { ErrorKind::intoItself, std::string(what) + ' ' + quotedName(item) + " into itself." };
}

/// The error of a step inside a transfer, where a name that is taken is nothing that another name for the item would mend.
Error innerError(TransferFailure const& failure, char const* what)
{
    FileURL const item(failure.name);
    if (failure.number == changedMeanwhile)
        return { ErrorKind::other, std::string(what) + ' ' + quotedName(item) + ": It has changed meanwhile." };
    if (failure.number == wouldHoldItself)
        return intoItself(what, item);
    auto error = fileError(failure.number, what, item);
    if (error.kind == ErrorKind::alreadyExists)
        error.kind = ErrorKind::other;
    return error;
}

/// Whether the folder open as `folder` is the directory `item` or lies in it, however it was reached.
bool isInside(int folder, struct stat const& item)
{
    FileDescriptor current(::openat(folder, ".", O_PATH | O_DIRECTORY | O_CLOEXEC));
    struct stat status { };
    while (current.isOpen() && ::fstat(current.get(), &status) == 0) {
        if (status.st_dev == item.st_dev && status.st_ino == item.st_ino)
            return true;
        auto const inode = status.st_ino;
        auto const device = status.st_dev;
        current = FileDescriptor(::openat(current.get(), "..", O_PATH | O_DIRECTORY | O_CLOEXEC));
        if (current.isOpen() && ::fstat(current.get(), &status) == 0 && status.st_ino == inode
            && status.st_dev == device)
            return false;
    }
    return false;
}

/// What keeps a transfer from beginning.
Result<void> check(FileURL const& at, Place const& from, FileURL const& to, Place const& destination, char const* what)
{
    if (from.openError)
        return fileError(from.openError, what, at);
    struct stat item { };
    if (::fstatat(from.folder.get(), from.name.c_str(), &item, AT_SYMLINK_NOFOLLOW) != 0)
        return fileError(errno, what, at);
    if (destination.openError)
        return fileError(
            destination.openError, std::string(what) + ' ' + quotedName(at) + " into", to.deletingLastPathComponent());
    if (S_ISDIR(item.st_mode) && isInside(destination.folder.get(), item))
        return intoItself(what, at);
    switch (int const number = destination.nameError()) {
    case 0:
        return {};
    case EEXIST:
        return alreadyExists(to);
    default:
        return fileError(number, what, at);
    }
}

/// Makes a copy of `from` under a temporary name and gives it its own when `isSafe` has returned zero.
template<typename IsSafe>
Result<void> copyAndPublish(FileURL const& at, Place const& from, FileURL const& to, Place const& destination,
    char const* what, CopiedItems* copied, IsSafe isSafe)
{
    TemporaryItem temporary(destination.folder.get());
    auto const failure = copyTree(
        from.item(), { destination.folder.get(), temporary.name() }, [&](int item) { return temporary.lock(item); },
        copied);
    if (failure)
        return innerError(*failure, what);
    if (int const number = isSafe())
        return innerError({ number, from.name }, what);
    int const number = temporary.publish(destination.name.c_str());
    if (number == EEXIST)
        return alreadyExists(to);
    if (number != 0)
        return fileError(number, what, at);
    return {};
}

/// Makes sure that what the folder's file system was given outlasts a loss of power.
int flushFileSystem(Place const& place)
{
    FileDescriptor const folder(::openat(place.folder.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // A folder that may not be listed cannot be opened for this; all file systems then are flushed.
    if (!folder.isOpen()) {
        ::sync();
        return 0;
    }
    return ::syncfs(folder.get()) == 0 ? 0 : errno;
}

/// Why an item could not be removed from its folder, or zero.
int removalError(Place const& place)
{
    if (::faccessat(place.folder.get(), ".", W_OK | X_OK, AT_EACCESS) != 0)
        return errno;
    struct stat folder { };
    struct stat item { };
    if (::fstat(place.folder.get(), &folder) != 0
        || ::fstatat(place.folder.get(), place.name.c_str(), &item, AT_SYMLINK_NOFOLLOW) != 0)
        return errno;
    auto const user = ::geteuid();
    bool const belongsToOthers = user != 0 && user != folder.st_uid && user != item.st_uid;
    return (folder.st_mode & S_ISVTX) && belongsToOthers ? EPERM : 0;
}

Result<void> moveAcrossFileSystems(FileURL const& at, Place const& from, FileURL const& to, Place const& destination)
{
    // What could not be removed in the end would be there twice.
    if (int const number = removalError(from))
        return fileError(number, couldNotMove, at);
    CopiedItems copied;
    auto outcome = copyAndPublish(
        at, from, to, destination, couldNotMove, &copied, [&] { return flushFileSystem(destination); });
    if (!outcome)
        return outcome;
    // The new name is to outlast the old one.
    if (int const number = flushFileSystem(destination))
        return innerError({ number, from.name }, couldNotRemoveOriginal);
    if (auto const failure = removeTree(from.folder.get(), from.name.c_str(), &copied))
        return innerError(*failure, couldNotRemoveOriginal);
    return {};
}

}

Result<void> FreedesktopFileTransfer::moveItem(FileURL const& at, FileURL const& to)
{
    Place const from(at);
    Place const destination(to);
    if (auto outcome = check(at, from, to, destination, couldNotMove); !outcome)
        return outcome;
    removeStaleTemporaryItems(destination.folder.get());
    int const number = renameWithoutReplacing(
        from.folder.get(), from.name.c_str(), destination.folder.get(), destination.name.c_str());
    if (number == 0)
        return {};
    if (number == EEXIST)
        return alreadyExists(to);
    if (number == EXDEV)
        return moveAcrossFileSystems(at, from, to, destination);
    return fileError(number, couldNotMove, at);
}

Result<void> FreedesktopFileTransfer::copyItem(FileURL const& at, FileURL const& to)
{
    Place const from(at);
    Place const destination(to);
    if (auto outcome = check(at, from, to, destination, couldNotCopy); !outcome)
        return outcome;
    removeStaleTemporaryItems(destination.folder.get());
    return copyAndPublish(at, from, to, destination, couldNotCopy, nullptr, [] { return 0; });
}

Result<void> FreedesktopFileTransfer::createAlias(FileURL const& at, FileURL const& to)
{
    Place const place(at);
    constexpr char what[] = "Could not make the alias";
    if (place.openError)
        return fileError(place.openError, what, at);
    if (!isSystemPath(to))
        return fileError(EINVAL, what, at);
    struct stat item { };
    if (::lstat(to.path().c_str(), &item) != 0)
        return fileError(errno, "Could not make an alias of", to);
    removeStaleTemporaryItems(place.folder.get());
    if (::symlinkat(to.path().c_str(), place.folder.get(), place.name.c_str()) == 0)
        return {};
    return errno == EEXIST ? alreadyExists(at) : fileError(errno, what, at);
}

Result<void> FreedesktopFileTransfer::removeItem(FileURL const& at)
{
    Place const place(at);
    constexpr char what[] = "Could not remove";
    if (place.openError)
        return fileError(place.openError, what, at);
    // They are names of directories that have other names, too.
    if (place.name == "." || place.name == "..")
        return fileError(EINVAL, what, at);
    if (auto const failure = removeTree(place.folder.get(), place.name.c_str()))
        return innerError(*failure, what);
    return {};
}

}
