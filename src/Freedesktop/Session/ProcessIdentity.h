#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>

namespace marrowick {

/// A process, told from a later one that got the same number.
struct ProcessIdentity {
    pid_t pid = 0;
    /// When it started or any later moment at which it ran, in the system's ticks since it was booted. A later process
    /// starts after that.
    std::uint64_t latestStart = 0;

    friend bool operator==(ProcessIdentity const&, ProcessIdentity const&) = default;
};

/// The process that has the number `pid` at this moment; absent where there is none, and for what this program has no
/// business with: itself, the system's first process, and other users' processes.
std::optional<ProcessIdentity> identityOfProcess(pid_t pid);

/// This moment, for a process that runs and whose start nobody looked up.
std::uint64_t ticksSinceBoot();

/// Sends a signal to the process, never to another one that got its number and never to what `identityOfProcess` tells
/// nothing of; false where it was not sent.
bool sendSignal(ProcessIdentity const& process, int signal);

}
