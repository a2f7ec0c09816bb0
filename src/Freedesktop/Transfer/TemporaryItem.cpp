#include "Freedesktop/Transfer/TemporaryItem.h"

#include "Freedesktop/Files/DirectoryEntries.h"
#include "Freedesktop/Transfer/Renaming.h"
#include "Freedesktop/Transfer/TemporaryName.h"
#include "Freedesktop/Transfer/TreeRemoval.h"

#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace marrowick {

namespace {

bool stillHasName(int item, int folder, char const* name)
{
    struct stat byName { };
    struct stat open { };
    return ::fstatat(folder, name, &byName, AT_SYMLINK_NOFOLLOW) == 0 && ::fstat(item, &open) == 0
        && byName.st_dev == open.st_dev && byName.st_ino == open.st_ino;
}

/// An item has no lock yet in the moment after it was made.
bool isOlderThanThatMoment(struct stat const& status)
{
    constexpr std::time_t moment = 60;
    return status.st_ctim.tv_sec < std::time(nullptr) - moment;
}

void removeIfStale(int folder, std::string const& name)
{
    struct stat status { };
    if (::fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return;
    bool const hasLock = S_ISREG(status.st_mode) || S_ISDIR(status.st_mode);
    if (!isMakerGone(name) && !isOlderThanThatMoment(status))
        return;
    FileDescriptor const item(
        hasLock ? ::openat(folder, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC) : -1);
    if (item.isOpen() && ::flock(item.get(), LOCK_EX | LOCK_NB) == 0) {
        if (stillHasName(item.get(), folder, name.c_str()))
            removeOwnTree(folder, name.c_str());
        return;
    }
    if (item.isOpen() && errno == EWOULDBLOCK)
        return;
    if (!hasLock || isMakerGone(name))
        removeOwnTree(folder, name.c_str());
}

}

TemporaryItem::TemporaryItem(int folder)
    : folder_(folder)
    , name_(makeTemporaryName())
{
}

TemporaryItem::~TemporaryItem()
{
    if (!isPublished_)
        removeOwnTree(folder_, name_.c_str());
}

bool TemporaryItem::lock(int item)
{
    if (item < 0)
        return true;
    // A second descriptor of the same opening holds the same lock, and holds it on when the first is closed.
    lock_ = FileDescriptor(::fcntl(item, F_DUPFD_CLOEXEC, 0));
    if (!lock_.isOpen())
        return false;
    if (::flock(lock_.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        return false;
    return stillHasName(lock_.get(), folder_, name_.c_str());
}

int TemporaryItem::publish(char const* name)
{
    int const number = renameWithoutReplacing(folder_, name_.c_str(), folder_, name);
    if (number == 0)
        isPublished_ = true;
    return number;
}

void removeStaleTemporaryItems(int folder)
{
    FileDescriptor const directory(::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    std::vector<std::string> names;
    if (!directory.isOpen())
        return;
    auto const keepTemporary = [&](dirent64 const& entry) {
        // Nearly every name fails the first test, which costs nothing.
        if (entry.d_name[0] == '.' && isTemporaryName(entry.d_name))
            names.emplace_back(entry.d_name);
    };
    if (visitEntries(directory.get(), keepTemporary) != 0)
        return;
    for (auto const& name : names)
        removeIfStale(folder, name);
}

}
