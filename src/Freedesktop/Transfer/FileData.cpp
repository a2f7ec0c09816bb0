#include "Freedesktop/Transfer/FileData.h"

#include "Freedesktop/Transfer/TransferFailure.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace marrowick {

namespace {

constexpr off_t bufferSize = 256 * 1024;
/// Below this a copy through memory is as quick as one inside the kernel.
constexpr off_t smallSize = 128 * 1024;

int writeAll(int target, char const* bytes, std::size_t count, off_t position)
{
    while (count > 0) {
        auto const written = ::pwrite(target, bytes, count, position);
        if (written < 0) {
            if (errno == EINTR)
                continue;
            return errno;
        }
        bytes += written;
        count -= static_cast<std::size_t>(written);
        position += written;
    }
    return 0;
}

bool isUnsupported(int number)
{
    return number == ENOSYS || number == EOPNOTSUPP || number == EXDEV || number == EINVAL || number == EPERM
        || number == ETXTBSY;
}

bool isUnchanged(int original, struct stat const& source)
{
    struct stat after { };
    return ::fstat(original, &after) == 0 && after.st_size == source.st_size
        && after.st_mtim.tv_sec == source.st_mtim.tv_sec && after.st_mtim.tv_nsec == source.st_mtim.tv_nsec;
}

}

int FileData::copy(int original, int target, struct stat const& source)
{
    if (int const number = copyContent(original, target, source))
        return number;
    return isUnchanged(original, source) ? 0 : changedMeanwhile;
}

int FileData::copyContent(int original, int target, struct stat const& source)
{
    if (source.st_size == 0)
        return copyUntold(original, target, source);
    if (share(original, target, source))
        return 0;
    if (source.st_blocks < source.st_size / 512)
        return copyAroundHoles(original, target, source.st_size);
    return copyRange(original, target, 0, source.st_size);
}

bool FileData::share(int original, int target, struct stat const& source)
{
    if (hasUnshared_ && unshared_ == source.st_dev)
        return false;
    if (::ioctl(target, FICLONE, original) == 0)
        return true;
    if (errno == EOPNOTSUPP || errno == ENOTTY || errno == EXDEV) {
        unshared_ = source.st_dev;
        hasUnshared_ = true;
    }
    return false;
}

/// An empty file; those of /proc seem to be, and have content all the same.
int FileData::copyUntold(int original, int target, struct stat const& source)
{
    for (off_t position = 0;;) {
        auto const count = ::pread(original, buffer(), static_cast<std::size_t>(bufferSize), position);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return count == 0 ? 0 : errno;
        // One that grows would perhaps never end.
        if (!isUnchanged(original, source))
            return changedMeanwhile;
        if (int const number = writeAll(target, buffer(), static_cast<std::size_t>(count), position))
            return number;
        position += count;
    }
}

int FileData::copyAroundHoles(int original, int target, off_t size)
{
    if (::lseek(original, 0, SEEK_DATA) < 0 && errno != ENXIO)
        return copyRange(original, target, 0, size);
    off_t position = 0;
    while (position < size) {
        off_t const start = ::lseek(original, position, SEEK_DATA);
        if (start < 0 && errno != ENXIO)
            return errno;
        if (start < 0 || start >= size)
            break;
        off_t const hole = ::lseek(original, start, SEEK_HOLE);
        if (hole < 0 && errno != ENXIO)
            return errno;
        off_t const end = hole < 0 ? size : std::min(hole, size);
        if (int const number = copyRange(original, target, start, end))
            return number;
        position = end;
    }
    // A hole at the end is made by nothing but the size.
    return position == size || ::ftruncate(target, size) == 0 ? 0 : errno;
}

int FileData::copyRange(int original, int target, off_t start, off_t end)
{
    if (end - start <= smallSize)
        return copyThroughMemory(original, target, start, end);
    off_t from = start;
    off_t to = start;
    while (from < end) {
        auto const count = ::copy_file_range(original, &from, target, &to, static_cast<std::size_t>(end - from), 0);
        if (count > 0)
            continue;
        if (count < 0 && errno == EINTR)
            continue;
        // Some file systems answer zero where they mean that they cannot.
        if (count == 0 || isUnsupported(errno))
            return copyThroughMemory(original, target, from, end);
        return errno;
    }
    return 0;
}

/// Copies the bytes from `start` up to `end`. A file that was cut meanwhile is noticed by its size; some kernel files end
/// before the size that they tell.
int FileData::copyThroughMemory(int original, int target, off_t start, off_t end)
{
    while (start < end) {
        auto const wanted = static_cast<std::size_t>(std::min(end - start, bufferSize));
        auto const count = ::pread(original, buffer(), wanted, start);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return count == 0 ? 0 : errno;
        if (int const number = writeAll(target, buffer(), static_cast<std::size_t>(count), start))
            return number;
        start += count;
    }
    return 0;
}

char* FileData::buffer()
{
    if (!buffer_)
        buffer_.reset(new char[bufferSize]);
    return buffer_.get();
}

}
