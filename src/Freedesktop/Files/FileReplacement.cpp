#include "Freedesktop/Files/FileReplacement.h"

#include "Freedesktop/Files/FileDescriptor.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <random>
#include <sys/file.h>
#include <unistd.h>

namespace marrowick {

namespace {

/// Zero, or the number of the error.
int writeAll(int file, std::string_view content)
{
    while (!content.empty()) {
        auto const count = ::write(file, content.data(), content.size());
        if (count < 0 && errno != EINTR)
            return errno;
        if (count > 0)
            content.remove_prefix(static_cast<std::size_t>(count));
    }
    // Otherwise a machine that stops may find the new name with nothing behind it.
    return ::fdatasync(file) == 0 || errno == EINVAL ? 0 : errno;
}

int closeFile(FileDescriptor& file)
{
    return ::close(file.release()) == 0 ? 0 : errno;
}

/// A folder that one writer has for itself, among all that ask in this way. Nobody waits for it.
class LockedFolder {
public:
    explicit LockedFolder(std::string const& path)
        : folder_(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
        , isHeld_(folder_.isOpen() && ::flock(folder_.get(), LOCK_EX | LOCK_NB) == 0)
    {
    }

    bool isHeld() const { return isHeld_; }

private:
    FileDescriptor folder_;
    bool isHeld_;
};

/// Renames the whole file at `temporary`, unless something failed before with the error `number`.
int publish(int number, std::string const& temporary, std::string const& path)
{
    if (number == 0 && std::rename(temporary.c_str(), path.c_str()) != 0)
        number = errno;
    if (number != 0)
        ::unlink(temporary.c_str());
    return number;
}

/// A file that has no name until it is whole leaves nothing behind when the process ends.
int replaceByNamelessFile(int file, std::string const& path, std::string const& temporary)
{
    auto const own = "/proc/self/fd/" + std::to_string(file);
    if (::linkat(AT_FDCWD, own.c_str(), AT_FDCWD, temporary.c_str(), AT_SYMLINK_FOLLOW) != 0)
        return errno;
    return publish(0, temporary, path);
}

std::string uniqueSuffix()
{
    std::random_device random;
    return std::to_string(::getpid()) + "-" + std::to_string(random());
}

/// For file systems that know no file without a name, or cannot give it one.
int replaceByNamedFile(std::string const& path, std::string const& temporary, std::string_view content)
{
    FileDescriptor file(::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666));
    if (!file.isOpen())
        return errno;
    int number = writeAll(file.get(), content);
    if (int const closed = closeFile(file); number == 0)
        number = closed;
    return publish(number, temporary, path);
}

}

int replaceFile(std::string const& path, std::string_view content)
{
    auto const slash = path.rfind('/');
    if (slash == std::string::npos)
        return ENOENT;
    auto const folder = path.substr(0, slash + 1);
    FileDescriptor const nameless(::open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666));
    if (nameless.isOpen()) {
        if (int const number = writeAll(nameless.get(), content))
            return number;
    }

    // Always the same name for whoever has the folder, so that processes that were killed leave one file at most.
    LockedFolder const lock(folder);
    auto const temporary = folder + "." + path.substr(slash + 1) + "." + (lock.isHeld() ? "new" : uniqueSuffix());
    ::unlink(temporary.c_str());
    if (nameless.isOpen() && replaceByNamelessFile(nameless.get(), path, temporary) == 0)
        return 0;
    return replaceByNamedFile(path, temporary, content);
}

}
