#include "Freedesktop/Session/ProcessIdentity.h"

#include "Freedesktop/Files/FileDescriptor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <ctime>
#include <string>
#include <string_view>

// Older versions of the header do not say that these are functions of C.
extern "C" {
#include <sys/pidfd.h>
}

namespace marrowick {

namespace {

/// The word of a process's status line that tells when it started. The program's name in parentheses comes before it
/// and may hold anything.
std::optional<std::uint64_t> startTimeIn(std::string_view status)
{
    constexpr int wordsBetween = 19;
    auto const name = status.rfind(')');
    if (name == std::string_view::npos)
        return std::nullopt;
    status.remove_prefix(name + 1);
    for (int i = 0; i <= wordsBetween; ++i) {
        auto const space = status.find(' ');
        if (space == std::string_view::npos)
            return std::nullopt;
        status.remove_prefix(space + 1);
    }
    std::uint64_t time = 0;
    auto const [end, error] = std::from_chars(status.data(), status.data() + status.size(), time);
    return error == std::errc() ? std::optional(time) : std::nullopt;
}

}

std::optional<ProcessIdentity> identityOfProcess(pid_t pid)
{
    if (pid <= 1 || pid == getpid())
        return std::nullopt;
    auto const path = "/proc/" + std::to_string(pid);
    FileDescriptor const folder(open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    // What lies in the folder belongs to root where the process keeps others from looking into it; the folder does not.
    struct stat owner { };
    if (!folder.isOpen() || fstat(folder.get(), &owner) != 0 || owner.st_uid != geteuid())
        return std::nullopt;
    FileDescriptor const file(openat(folder.get(), "stat", O_RDONLY | O_CLOEXEC));
    std::array<char, 4096> status {};
    auto const length = file.isOpen() ? read(file.get(), status.data(), status.size()) : -1;
    if (length <= 0)
        return std::nullopt;
    auto const startTime = startTimeIn({ status.data(), static_cast<std::size_t>(length) });
    return startTime ? std::optional(ProcessIdentity { pid, *startTime }) : std::nullopt;
}

std::uint64_t ticksSinceBoot()
{
    constexpr std::uint64_t nanosecondsInSecond = 1'000'000'000;
    std::timespec now {};
    clock_gettime(CLOCK_BOOTTIME, &now);
    auto const nanoseconds
        = static_cast<std::uint64_t>(now.tv_sec) * nanosecondsInSecond + static_cast<std::uint64_t>(now.tv_nsec);
    return nanoseconds / (nanosecondsInSecond / static_cast<std::uint64_t>(sysconf(_SC_CLK_TCK)));
}

bool sendSignal(ProcessIdentity const& process, int signal)
{
    // Held before the identity is looked at: then the number cannot pass to another process in between.
    FileDescriptor const handle(pidfd_open(process.pid, 0));
    bool const isKnown = handle.get() >= 0 || errno == ENOSYS;
    auto const present = isKnown ? identityOfProcess(process.pid) : std::nullopt;
    if (!present || present->latestStart > process.latestStart)
        return false;
    if (handle.get() < 0)
        return kill(process.pid, signal) == 0;
    return pidfd_send_signal(handle.get(), signal, nullptr, 0) == 0;
}

}
