#pragma once

#include "Platform/FileURL.h"

#include <optional>
#include <string_view>

namespace marrowick {

/// The location that a "file:" URL names (RFC 8089), percent-encoding undone to exact bytes. Absent for other schemes,
/// other hosts than this one, a relative path, a broken escape and an encoded NUL.
std::optional<FileURL> fileURLFromText(std::string_view text);

}
