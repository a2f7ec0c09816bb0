#include "ProgramRun.h"

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <thread>

namespace marrowick::benchmarks {

namespace {

/// The number behind each line that begins with `label`, added up.
std::uint64_t sumOfLines(std::filesystem::path const& file, std::string const& label)
{
    std::ifstream lines(file);
    std::uint64_t sum = 0;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(label))
            sum += std::strtoull(line.c_str() + label.size(), nullptr, 10);
    }
    return sum;
}

std::filesystem::path processFolder(pid_t process)
{
    return "/proc/" + std::to_string(process);
}

std::filesystem::directory_iterator threadFolders(pid_t process)
{
    return std::filesystem::directory_iterator(processFolder(process) / "task");
}

}

ProgramRun::ProgramRun(std::vector<std::string> command)
{
    std::vector<char*> words;
    for (auto& word : command)
        words.push_back(word.data());
    words.push_back(nullptr);
    if (int const error = posix_spawnp(&process_, words.front(), nullptr, nullptr, words.data(), environ)) {
        std::fprintf(stderr, "%s: %s\n", words.front(), std::strerror(error));
        std::exit(2);
    }
}

ProgramRun::~ProgramRun()
{
    kill(process_, SIGTERM);
    for (auto const end = std::chrono::steady_clock::now() + std::chrono::seconds(5);
         std::chrono::steady_clock::now() < end;) {
        if (waitpid(process_, nullptr, WNOHANG) != 0)
            return;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
}

std::chrono::duration<double, std::milli> ProgramRun::cpuTime() const
{
    std::chrono::duration<double, std::nano> time {};
    for (auto const& thread : threadFolders(process_)) {
        std::ifstream file(thread.path() / "schedstat");
        std::uint64_t nanoseconds = 0;
        file >> nanoseconds;
        time += std::chrono::nanoseconds(nanoseconds);
    }
    return time;
}

std::uint64_t ProgramRun::privateDirtyKilobytes() const
{
    return sumOfLines(processFolder(process_) / "smaps_rollup", "Private_Dirty:");
}

std::uint64_t ProgramRun::contextSwitches() const
{
    std::uint64_t sum = 0;
    for (auto const& thread : threadFolders(process_)) {
        sum += sumOfLines(thread.path() / "status", "voluntary_ctxt_switches:");
        sum += sumOfLines(thread.path() / "status", "nonvoluntary_ctxt_switches:");
    }
    return sum;
}

}
