#include "Freedesktop/Files/FileErrors.h"

#include <cerrno>
#include <cstring>
#include <glib.h>

namespace marrowick {

ErrorKind errorKindOf(int number)
{
    switch (number) {
    case ENOENT:
    case ENOTDIR:
        return ErrorKind::notFound;
    case EEXIST:
        return ErrorKind::alreadyExists;
    case EACCES:
    case EPERM:
    case EROFS:
        return ErrorKind::noPermission;
    }
    return ErrorKind::other;
}

std::string quotedName(FileURL const& url)
{
    auto const name = url.lastPathComponent();
    char* const readable = g_utf8_make_valid(name.data(), static_cast<gssize>(name.size()));
    std::string const quoted = "\u201C" + std::string(readable) + "\u201D";
    g_free(readable);
    return quoted;
}

Error fileError(int number, std::string_view what, FileURL const& url)
{
    char const* const reason = strerrordesc_np(number);
    return { errorKindOf(number),
        std::string(what) + ' ' + quotedName(url) + ": " + (reason ? reason : "Unknown error") + '.' };
}

}
