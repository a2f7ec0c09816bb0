#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace marrowick {

struct ChildProcess {
    /// The program, looked up in PATH where it holds no slash, and its arguments. Not empty.
    std::vector<std::string> command;
    /// Variables that differ from this process's: set, or taken out where absent.
    std::map<std::string, std::optional<std::string>> environmentChanges;
    /// This process's where empty.
    std::string workingDirectory;
};

/// Starts a program that goes its own way: in a session of its own, so that it outlives this process and the terminal
/// it was started from, with no input, no other descriptors than standard output and error, and no signal ignored or
/// blocked. False where it could not be started. Costs no copy of this process, however big it is.
bool startDetached(ChildProcess const& child);

}
