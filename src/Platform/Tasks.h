#pragma once

#include "Platform/FileURL.h"
#include "Platform/Result.h"

#include <map>
#include <string>
#include <vector>

namespace marrowick {

/// Names and values in exact bytes.
using TaskEnvironment = std::map<std::string, std::string>;

/// A process to be started.
struct Task {
    FileURL executable;
    /// Without the name of the program itself.
    std::vector<std::string> arguments;
    TaskEnvironment environment;
};

/// Starts processes. Main thread only.
class Tasks {
public:
    virtual ~Tasks() = default;

    /// This process's own environment.
    virtual TaskEnvironment environment() const = 0;

    /// Starts a process that shares standard input, output and error and the working directory with this one, and nothing
    /// else. Nobody waits for it. The error says why it could not be started.
    virtual Result<void> launch(Task const& task) = 0;
};

}
