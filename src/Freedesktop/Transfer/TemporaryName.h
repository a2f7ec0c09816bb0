#pragma once

#include <string>
#include <string_view>

namespace marrowick {

/// A hidden name that no other transfer has, and that tells which process made it.
std::string makeTemporaryName();

/// Whether the name is one of `makeTemporaryName`.
bool isTemporaryName(std::string_view name);

/// Whether the process that made the name has ended for certain. One that ran on another machine, in another container or
/// before the last start of the system is not known.
bool isMakerGone(std::string_view temporaryName);

}
