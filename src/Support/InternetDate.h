#pragma once

#include "Platform/FileManager.h"

#include <optional>
#include <string>
#include <string_view>

namespace marrowick {

/// A date like "2026-11-16T00:44:41Z" (RFC 3339), in UTC; what is less than a second is dropped. Absent for years that four
/// digits cannot write.
std::optional<std::string> internetDateText(FileTime date);

/// The moment that such a text names, with "Z" or an offset like "+01:00". Absent for everything else: fractions of
/// a second, a missing zone, days and times that do not exist.
std::optional<FileTime> dateFromInternetText(std::string_view text);

}
