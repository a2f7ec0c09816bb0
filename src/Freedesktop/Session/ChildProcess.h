#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace marrowick {

enum class StandardInput : std::uint8_t {
    empty,
    /// This process's own.
    inherited,
};

struct ChildProcess {
    /// The program, looked up in PATH where it holds no slash, and its arguments. Not empty, and no word holds a NUL.
    std::vector<std::string> command;
    /// "NAME=value" each.
    std::vector<std::string> environment;
    /// This process's where empty.
    std::string workingDirectory;
    StandardInput standardInput = StandardInput::empty;
};

/// Variables that are set, or taken out where absent.
using EnvironmentChanges = std::map<std::string, std::optional<std::string>>;

/// This process's environment with some variables that differ.
std::vector<std::string> environmentWith(EnvironmentChanges const& changes);

/// Starts a program that goes its own way: in a session of its own, so that neither the end of this process nor of the
/// terminal it was started from ends it, without other descriptors than standard input, output and error, and with no
/// signal ignored or blocked. Zero, or the system's error number where it could not be started. Costs no copy of this
/// process, however big it is.
int startDetached(ChildProcess const& child);

}
