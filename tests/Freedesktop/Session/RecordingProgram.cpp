// A program that leaves a record of how it was started beside its own file: "<file>.record" holds its arguments, each
// ended by NUL, "<file>.environment" its environment likewise, and "<file>.facts" what it found, a line each. The record
// appears last, whole, under its name; a file in "<file>.starts" holds the arguments of each start.
// A program whose name ends in "slow" stays for a while.

#include <fcntl.h>
#include <unistd.h>

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

std::string linkTarget(std::string const& path)
{
    char target[PATH_MAX] = {};
    auto const length = readlink(path.c_str(), target, sizeof target - 1);
    return length < 0 ? std::string("none") : std::string(target, static_cast<std::size_t>(length));
}

void writeFacts(std::string const& path)
{
    std::ofstream facts(path);
    facts << "pid " << getpid() << "\nsession " << getsid(0) << "\ninput " << linkTarget("/proc/self/fd/0")
          << "\noutput " << linkTarget("/proc/self/fd/1") << "\nerror " << linkTarget("/proc/self/fd/2")
          << "\ndirectory " << linkTarget("/proc/self/cwd") << "\n";
    for (auto const* name : { "DISPLAY", "DESKTOP_STARTUP_ID", "GIO_LAUNCHED_DESKTOP_FILE" }) {
        char const* const value = std::getenv(name);
        facts << name << " " << (value ? value : "none") << "\n";
    }
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("SigIgn:") || line.starts_with("SigBlk:"))
            facts << line.substr(0, 6) << " " << line.substr(8) << "\n";
    }
}

void writeTexts(std::string const& path, char** texts)
{
    std::ofstream file(path, std::ios::binary);
    for (; *texts; ++texts)
        file << *texts << '\0';
}

/// The descriptors that were open from the start, before this program opens any.
std::string inheritedDescriptors()
{
    std::string descriptors;
    for (int descriptor = 0; descriptor < 256; ++descriptor) {
        if (fcntl(descriptor, F_GETFD) >= 0)
            descriptors += " " + std::to_string(descriptor);
    }
    return descriptors;
}

}

int main(int, char** argv)
{
    auto const descriptors = inheritedDescriptors();
    auto const self = linkTarget("/proc/self/exe");
    writeFacts(self + ".facts");
    std::ofstream(self + ".facts", std::ios::app) << "descriptors" << descriptors << "\n";
    auto const unfinished = self + "." + std::to_string(getpid());
    writeTexts(unfinished, environ);
    std::filesystem::rename(unfinished, self + ".environment");
    std::filesystem::create_directory(self + ".starts");
    writeTexts(unfinished, argv + 1);
    std::filesystem::rename(unfinished, self + ".starts/" + std::to_string(getpid()));
    writeTexts(unfinished, argv + 1);
    std::filesystem::rename(unfinished, self + ".record");
    if (self.ends_with("slow"))
        sleep(30);
    return 0;
}
