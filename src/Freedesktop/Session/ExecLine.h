#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace marrowick {

/// What the field codes of a desktop entry's command line stand for.
struct ExecFields {
    /// The exact bytes of absolute paths.
    std::vector<std::string> files;
    std::string localizedName;
    std::string icon;
    std::string entryPath;
};

/// The words of each command that `exec`, a desktop entry's Exec key, asks for: one that gets all files where it takes
/// several, otherwise one for each file. A file that no field code asks for becomes the last word of its command. None
/// where the line cannot be parsed.
std::vector<std::vector<std::string>> expandExecLine(std::string const& exec, ExecFields const& fields);

/// The file name of the program that `exec` starts; empty where other words than options and field codes follow it,
/// as those may name what really runs.
std::string soleProgramOfExecLine(std::string const& exec);

/// A "file:" URL of an absolute path of any bytes; empty for other paths.
std::string fileURIOf(std::string const& path);

}
