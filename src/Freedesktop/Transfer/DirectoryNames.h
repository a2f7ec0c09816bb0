#pragma once

#include <string>
#include <vector>

namespace marrowick {

/// Appends the names that the directory open as `directory` holds to `names`, "." and ".." left out. Returns zero, or the
/// system's error number.
int readNames(int directory, std::vector<std::string>& names);

}
