#pragma once

#include "Freedesktop/Preview/PreviewContent.h"
#include "Platform/FileURL.h"

#include <string>

namespace marrowick {

/// What can be told of the item at `url`, links followed where they lead somewhere. Any thread. `dateLocale` is an ICU locale;
/// the items of a folder are counted until `limit` is reached.
FileFacts fileFacts(FileURL const& url, std::string const& dateLocale, LoadLimit const& limit);

}
