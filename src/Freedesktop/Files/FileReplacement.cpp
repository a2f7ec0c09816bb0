#include "Freedesktop/Files/FileReplacement.h"

#include "Freedesktop/Files/FileDescriptor.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <mutex>
#include <random>
#include <unistd.h>
#include <utility>

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

/// A file that has no name until it is whole leaves nothing behind when the process ends.
class NamelessFile {
public:
    explicit NamelessFile(std::string const& folder)
        : file_(::open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666))
    {
    }

    bool isOpen() const { return file_.isOpen(); }

    int write(std::string_view content) { return writeAll(file_.get(), content); }

    /// Publishes the file by way of a name that only this function uses.
    int moveTo(std::string const& path, std::string const& passingName) const
    {
        static std::mutex mutex;
        std::lock_guard const lock(mutex);
        auto const own = "/proc/self/fd/" + std::to_string(file_.get());
        ::unlink(passingName.c_str());
        if (::linkat(AT_FDCWD, own.c_str(), AT_FDCWD, passingName.c_str(), AT_SYMLINK_FOLLOW) != 0)
            return errno;
        if (std::rename(passingName.c_str(), path.c_str()) == 0)
            return 0;
        int const number = errno;
        ::unlink(passingName.c_str());
        return number;
    }

private:
    FileDescriptor file_;
};

std::string uniqueSuffix()
{
    std::random_device random;
    return std::to_string(::getpid()) + "-" + std::to_string(random());
}

/// For file systems that know no file without a name.
int replaceByNamedFile(std::string const& path, std::string const& temporary, std::string_view content)
{
    FileDescriptor file(::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666));
    if (!file.isOpen())
        return errno;
    int number = writeAll(file.get(), content);
    if (int const closed = closeFile(file); number == 0)
        number = closed;
    if (number == 0 && std::rename(temporary.c_str(), path.c_str()) != 0)
        number = errno;
    if (number != 0)
        ::unlink(temporary.c_str());
    return number;
}

}

int replaceFile(std::string const& path, std::string_view content)
{
    auto const slash = path.rfind('/');
    if (slash == std::string::npos)
        return ENOENT;
    auto const folder = path.substr(0, slash + 1);
    auto const hidden = folder + "." + path.substr(slash + 1) + ".";
    NamelessFile file(folder);
    if (!file.isOpen())
        return replaceByNamedFile(path, hidden + uniqueSuffix(), content);
    int const number = file.write(content);
    return number != 0 ? number : file.moveTo(path, hidden + "new");
}

}
