#pragma once

#include <cerrno>
#include <optional>
#include <string>

namespace marrowick {

/// What ended a transfer: the system's error number, and the name of the item that it was about.
struct TransferFailure {
    int number = 0;
    std::string name;
};

/// Error numbers with a meaning of their own in a transfer.
constexpr int changedMeanwhile = ESTALE;
constexpr int wouldHoldItself = ELOOP;

/// Absent when a step of a transfer succeeded.
using TransferOutcome = std::optional<TransferFailure>;

}
