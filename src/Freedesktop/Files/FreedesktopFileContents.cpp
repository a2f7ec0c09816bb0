#include "Freedesktop/Files/FreedesktopFileContents.h"

#include "Freedesktop/Files/FileErrors.h"
#include "Freedesktop/Files/FileReplacement.h"
#include "Freedesktop/Files/RegularFile.h"

#include <cerrno>
#include <fcntl.h>
#include <utility>
#include <variant>

namespace marrowick {

namespace {

Error readError(ReadError const& error, FileURL const& url)
{
    switch (error.failure) {
    case ReadFailure::system:
        break;
    case ReadFailure::notRegularFile:
        return { ErrorKind::notRegularFile, quotedName(url) + " is not a regular file." };
    case ReadFailure::tooLarge:
        return { ErrorKind::tooLarge, quotedName(url) + " is too large." };
    }
    return fileError(error.number, "Could not read", url);
}

Result<std::string> outcome(std::variant<std::string, ReadError> content, FileURL const& url)
{
    if (auto* error = std::get_if<ReadError>(&content))
        return readError(*error, url);
    return std::get<std::string>(std::move(content));
}

Result<std::string> readFile(FileURL const& url, std::size_t limit, Links links)
{
    if (!isSystemPath(url))
        return fileError(ENOENT, "Could not read", url);
    return outcome(readRegularFile(AT_FDCWD, url.path().c_str(), limit, links), url);
}

}

Result<std::string> FreedesktopFileContents::read(FileURL const& url, std::size_t limit) const
{
    return readFile(url, limit, Links::followed);
}

Result<std::string> FreedesktopFileContents::readBeginning(FileURL const& url, std::size_t count) const
{
    if (!isSystemPath(url))
        return fileError(ENOENT, "Could not read", url);
    return outcome(readBeginningOfRegularFile(AT_FDCWD, url.path().c_str(), count), url);
}

Result<std::string> FreedesktopFileContents::readUnlessLink(FileURL const& url, std::size_t limit) const
{
    return readFile(url, limit, Links::refused);
}

Result<void> FreedesktopFileContents::replace(FileURL const& url, std::string_view content) const
{
    int const number = isSystemPath(url) ? replaceFile(url.path(), content) : ENOENT;
    return number == 0 ? Result<void>() : fileError(number, "Could not write", url);
}

}
