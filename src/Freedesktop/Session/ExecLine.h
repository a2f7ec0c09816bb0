#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace marrowick {

/// What the field codes of a desktop entry's command line stand for.
struct ExecFields {
    /// The exact bytes of an absolute path; absent where the application is started without a file.
    std::optional<std::string> file;
    std::string localizedName;
    std::string icon;
    std::string entryPath;
};

/// The words of the command that `exec`, a desktop entry's Exec key, asks for. A file that no field code asks for
/// becomes the last word. Empty where the line cannot be parsed.
std::vector<std::string> expandExecLine(std::string const& exec, ExecFields const& fields);

/// The file name of the program that `exec` starts; empty where other words than options and field codes follow it,
/// as those may name what really runs.
std::string soleProgramOfExecLine(std::string const& exec);

/// A "file:" URL of an absolute path of any bytes; empty for other paths.
std::string fileURIOf(std::string const& path);

}
