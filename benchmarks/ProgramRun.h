#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace marrowick::benchmarks {

/// A program that runs until the end of this object, which asks it to terminate and waits for that.
class ProgramRun {
public:
    /// The program is looked for as the shell does. Stops this program where it cannot be started.
    explicit ProgramRun(std::vector<std::string> command);
    ~ProgramRun();
    ProgramRun(ProgramRun const&) = delete;
    ProgramRun& operator=(ProgramRun const&) = delete;

    /// User and system time of the program so far, threads that have ended left out.
    std::chrono::duration<double, std::milli> cpuTime() const;

    /// Memory that it has written to and that no other process shares.
    std::uint64_t privateDirtyKilobytes() const;

    /// How often its threads were given a processor so far, those that have ended left out.
    std::uint64_t contextSwitches() const;

private:
    pid_t process_ = 0;
};

}
