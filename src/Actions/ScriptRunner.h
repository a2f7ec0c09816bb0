#pragma once

#include "Platform/FileURL.h"

#include <optional>
#include <vector>

namespace marrowick {

/// Runs the scripts of the items folder. Main thread only.
class ScriptRunner {
public:
    /// Starts `script` without waiting for it: a ".sh" with the paths of `selection` as arguments, a ".scpt" without. Both
    /// find the number of selected items in MW_NARGS and, where there is one, the path of `clickedWindow` in MW_CLICKWIN.
    /// A file with another extension is not run; a failure to start is a line in the system log.
    static void run(
        FileURL const& script, std::vector<FileURL> const& selection, std::optional<FileURL> const& clickedWindow);
};

}
