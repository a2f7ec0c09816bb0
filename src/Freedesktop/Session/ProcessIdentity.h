#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>

namespace marrowick {

/// A process, told from a later one that got the same number.
struct ProcessIdentity {
    pid_t pid = 0;
    /// In the system's own units since it was booted.
    std::uint64_t startTime = 0;

    friend bool operator==(ProcessIdentity const&, ProcessIdentity const&) = default;
};

/// The process that has the number `pid` at this moment; absent where there is none, and for what this program has no
/// business with: itself, the system's first process, and other users' processes.
std::optional<ProcessIdentity> identityOfProcess(pid_t pid);

/// Sends a signal to the process, never to another one that got its number; false where it was not sent.
bool sendSignal(ProcessIdentity const& process, int signal);

}
