#pragma once

#include <sys/types.h>
#include <xcb/xcb.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace marrowick {

/// A window as a file manager's companion tells it.
struct ToldWindow {
    std::uint64_t id = 0;
    std::string folder;
    std::vector<std::string> selected;
    bool isActive = false;
};

/// A file manager with a companion: another process, which does what the test says.
class FileManagerProcess {
public:
    explicit FileManagerProcess(std::vector<std::string> const& names = { "org.marrowick.FileManager.Test" });
    ~FileManagerProcess();
    FileManagerProcess(FileManagerProcess const&) = delete;
    FileManagerProcess& operator=(FileManagerProcess const&) = delete;

    /// Performs a command and returns what the program said.
    std::string perform(std::string const& command);
    void tell(std::vector<ToldWindow> const& windows);
    /// How many questions have reached it.
    int count() { return std::stoi(perform("count")); }
    xcb_window_t open(std::string const& type = "NORMAL");

    void signal(int number);
    /// Ends it and waits until it is gone.
    void kill();

private:
    pid_t pid_ = 0;
    std::FILE* input_ = nullptr;
    std::FILE* output_ = nullptr;
};

}
