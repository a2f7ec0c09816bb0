#pragma once

#include "Platform/FileURL.h"

#include <string>

namespace marrowick {

/// The first 4000 characters of a text file; empty where it cannot be read or is not UTF-8. Of a file larger than 16 MiB
/// only what is shown is looked at. Main thread only.
std::string textPreview(FileURL const& url);

}
