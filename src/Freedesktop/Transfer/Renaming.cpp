#include "Freedesktop/Transfer/Renaming.h"

#include "Freedesktop/Files/FileDescriptor.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace marrowick {

namespace {

bool isUnsupported(int number)
{
    return number == EINVAL || number == ENOSYS || number == EOPNOTSUPP;
}

/// A second name takes a free name only; the first is then given up.
int renameByLink(int fromFolder, char const* fromName, int toFolder, char const* toName)
{
    if (::linkat(fromFolder, fromName, toFolder, toName, 0) != 0)
        return errno;
    if (::unlinkat(fromFolder, fromName, 0) == 0)
        return 0;
    int const number = errno;
    ::unlinkat(toFolder, toName, 0);
    return number;
}

/// An empty item that holds a name free.
class Placeholder {
public:
    Placeholder(int folder, char const* name, bool isDirectory)
        : folder_(folder)
        , name_(name)
        , isDirectory_(isDirectory)
    {
    }

    int make()
    {
        if (isDirectory_ && ::mkdirat(folder_, name_, S_IRWXU) != 0)
            return errno;
        constexpr int flags = O_NOFOLLOW | O_CLOEXEC;
        item_ = FileDescriptor(isDirectory_
                ? ::openat(folder_, name_, O_RDONLY | O_DIRECTORY | flags)
                : ::openat(folder_, name_, O_WRONLY | O_CREAT | O_EXCL | flags, S_IRUSR | S_IWUSR));
        return item_.isOpen() ? 0 : errno;
    }

    /// Whether no other program has put an item in its place or bytes into it. What a directory holds its replacement
    /// notices by itself.
    bool isUntouched() const
    {
        struct stat byName { };
        struct stat open { };
        return ::fstatat(folder_, name_, &byName, AT_SYMLINK_NOFOLLOW) == 0 && ::fstat(item_.get(), &open) == 0
            && byName.st_dev == open.st_dev && byName.st_ino == open.st_ino && (isDirectory_ || open.st_size == 0);
    }

    void remove() const
    {
        if (isUntouched())
            ::unlinkat(folder_, name_, isDirectory_ ? AT_REMOVEDIR : 0);
    }

private:
    int folder_;
    char const* name_;
    bool isDirectory_;
    FileDescriptor item_ { -1 };
};

/// Takes the name with an empty item first, and puts the item in its place.
int renameByPlaceholder(int fromFolder, char const* fromName, int toFolder, char const* toName, bool isDirectory)
{
    Placeholder placeholder(toFolder, toName, isDirectory);
    if (int const number = placeholder.make())
        return number;
    if (!placeholder.isUntouched())
        return EEXIST;
    if (::renameat(fromFolder, fromName, toFolder, toName) == 0)
        return 0;
    int const number = errno;
    placeholder.remove();
    return number == ENOTEMPTY ? EEXIST : number;
}

}

int renameWithoutReplacing(int fromFolder, char const* fromName, int toFolder, char const* toName)
{
    if (::renameat2(fromFolder, fromName, toFolder, toName, RENAME_NOREPLACE) == 0)
        return 0;
    if (!isUnsupported(errno))
        return errno;
    struct stat status { };
    if (::fstatat(fromFolder, fromName, &status, AT_SYMLINK_NOFOLLOW) != 0)
        return errno;
    bool const isDirectory = S_ISDIR(status.st_mode);
    if (!isDirectory) {
        int const number = renameByLink(fromFolder, fromName, toFolder, toName);
        if (number != EPERM && number != EMLINK && !isUnsupported(number))
            return number;
    }
    return renameByPlaceholder(fromFolder, fromName, toFolder, toName, isDirectory);
}

}
