#include "Freedesktop/Files/RegularFile.h"

#include "Freedesktop/Files/FileDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <utility>

namespace marrowick {

namespace {

constexpr std::size_t smallestRoom = 4096;

std::variant<std::string, ReadError> readAll(int file, std::size_t sizeAtOpen, std::size_t limit)
{
    std::string content;
    std::size_t filled = 0;
    // One byte of room past the size seen at opening tells the end of the file from a file that grows.
    content.resize(std::min(sizeAtOpen, limit) + 1);
    for (;;) {
        auto const count = ::read(file, content.data() + filled, content.size() - filled);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return ReadError { ReadFailure::system, errno };
        if (count == 0)
            break;
        filled += static_cast<std::size_t>(count);
        if (filled > limit)
            return ReadError { ReadFailure::tooLarge };
        if (filled == content.size())
            content.resize(filled + std::max(smallestRoom, filled));
    }
    content.resize(filled);
    return content;
}

std::variant<std::string, ReadError> readBeginning(int file, std::size_t count)
{
    std::string content(count, '\0');
    std::size_t filled = 0;
    while (filled < count) {
        auto const length = ::read(file, content.data() + filled, count - filled);
        if (length < 0 && errno == EINTR)
            continue;
        if (length < 0)
            return ReadError { ReadFailure::system, errno };
        if (length == 0)
            break;
        filled += static_cast<std::size_t>(length);
    }
    content.resize(filled);
    return content;
}

struct OpenedFile {
    FileDescriptor file;
    std::size_t size = 0;
};

std::variant<OpenedFile, ReadError> openRegularFile(int directory, char const* path, Links links)
{
    struct stat status { };
    bool const follows = links == Links::followed;
    if (::fstatat(directory, path, &status, AT_NO_AUTOMOUNT | (follows ? 0 : AT_SYMLINK_NOFOLLOW)) != 0)
        return ReadError { ReadFailure::system, errno };
    if (!S_ISREG(status.st_mode))
        return ReadError { ReadFailure::notRegularFile };

    // The item may be another one by the time it is opened, so opening must not wait either, and the test is repeated.
    FileDescriptor file(
        ::openat(directory, path, O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY | (follows ? 0 : O_NOFOLLOW)));
    // What came into the file's place meanwhile: a link that is not followed, a socket.
    if (!file.isOpen() && ((!follows && errno == ELOOP) || errno == ENXIO))
        return ReadError { ReadFailure::notRegularFile };
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0)
        return ReadError { ReadFailure::system, errno };
    if (!S_ISREG(status.st_mode))
        return ReadError { ReadFailure::notRegularFile };
    return OpenedFile { std::move(file), static_cast<std::size_t>(status.st_size) };
}

}

std::variant<std::string, ReadError> readRegularFile(int directory, char const* path, std::size_t limit, Links links)
{
    auto const opened = openRegularFile(directory, path, links);
    if (auto const* error = std::get_if<ReadError>(&opened))
        return *error;
    auto const& [file, size] = std::get<OpenedFile>(opened);
    if (size > limit)
        return ReadError { ReadFailure::tooLarge };
    return readAll(file.get(), size, limit);
}

std::variant<std::string, ReadError> readBeginningOfRegularFile(int directory, char const* path, std::size_t count)
{
    auto const opened = openRegularFile(directory, path, Links::followed);
    if (auto const* error = std::get_if<ReadError>(&opened))
        return *error;
    auto const& [file, size] = std::get<OpenedFile>(opened);
    return readBeginning(file.get(), count);
}

}
