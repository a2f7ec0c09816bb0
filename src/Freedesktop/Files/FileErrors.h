#pragma once

#include "Platform/FileURL.h"
#include "Platform/Result.h"

#include <string>
#include <string_view>

namespace marrowick {

/// The failure that the system's error number `number` tells.
ErrorKind errorKindOf(int number);

/// The failure as one sentence: `what` with the name of `url` in quotes after it, and the system's reason.
Error fileError(int number, std::string_view what, FileURL const& url);

/// The name of `url` in typographic quotes, as UTF-8 for people.
std::string quotedName(FileURL const& url);

/// Whether the system takes `url` as it stands: a zero byte would end the path early and name another item.
inline bool isSystemPath(FileURL const& url)
{
    return url.path().find('\0') == std::string::npos;
}

}
