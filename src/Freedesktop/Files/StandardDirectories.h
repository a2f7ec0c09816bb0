#pragma once

#include "Platform/FileManager.h"

#include <optional>
#include <string>
#include <string_view>

namespace marrowick {

/// `$HOME` where that is an absolute path, else what the user database says, else the root.
std::string homePath();

/// The user's folder for a purpose, read afresh from the environment and the user's folder settings at each call: the
/// toolkit's own answer is cached for the process, and renewing that cache is not safe beside other threads.
std::string standardDirectoryPath(StandardDirectory directory);

/// The folder that `settings`, the text of a "user-dirs.dirs" file, names for `key` (such as "XDG_DESKTOP_DIR"). Absent
/// when there is none, and when it is the home folder itself, by which a purpose is switched off.
std::optional<std::string> userDirectory(std::string_view settings, std::string_view key, std::string const& home);

}
