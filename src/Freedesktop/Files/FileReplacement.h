#pragma once

#include <string>
#include <string_view>

namespace marrowick {

/// Writes `content` to a file without a name, or with a hidden one, in the folder of `path`, and lets it take the place of
/// `path` when all of it is on the disk. Zero, or the number of the error.
int replaceFile(std::string const& path, std::string_view content);

}
