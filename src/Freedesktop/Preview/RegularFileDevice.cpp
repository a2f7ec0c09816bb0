#include "Freedesktop/Preview/RegularFileDevice.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace marrowick {

RegularFileDevice::RegularFileDevice(std::shared_ptr<LoadLimit const> limit)
    : limit_(std::move(limit))
{
}

bool RegularFileDevice::openFile(FileURL const& url)
{
    // Opening something else can wake its writer or make a device act.
    struct stat status { };
    auto const* const path = url.path().c_str();
    if (::stat(path, &status) != 0 || !S_ISREG(status.st_mode))
        return false;
    int const file = ::open(path, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (file < 0)
        return false;
    if (::fstat(file, &status) == 0 && S_ISREG(status.st_mode)
        && QFile::open(file, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return true;
    ::close(file);
    return false;
}

qint64 RegularFileDevice::readData(char* data, qint64 maxSize)
{
    return limit_->isReached() ? -1 : QFile::readData(data, maxSize);
}

}
