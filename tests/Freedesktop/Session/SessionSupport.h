#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace marrowick {

/// Serves the event loop until `condition` holds; false when it does not within `limit`.
bool waitFor(std::function<bool()> const& condition, std::chrono::milliseconds limit = std::chrono::seconds(20));

std::string environmentVariable(char const* name);

void writeFile(std::string const& path, std::string const& content, mode_t mode = 0644);

/// A program that the test started; it is ended with the object.
class StartedProgram {
public:
    explicit StartedProgram(std::vector<std::string> command);
    ~StartedProgram() { end(); }
    StartedProgram(StartedProgram const&) = delete;
    StartedProgram& operator=(StartedProgram const&) = delete;

    pid_t pid() const { return pid_; }
    void end(int signal = 0);
    /// The test has seen it end.
    void forget() { pid_ = 0; }

private:
    pid_t pid_ = 0;
};

/// Runs a program to its end; its exit status.
int runProgram(std::vector<std::string> command);

/// A copy of the program that records how it was started, under the name that a test wants.
class Recorder {
public:
    explicit Recorder(std::string path);

    std::string const& path() const { return path_; }

    /// The arguments of the latest start, once there is one.
    std::optional<std::vector<std::string>> arguments() const;
    /// Waits for a start and takes it off; absent when none comes.
    std::optional<std::vector<std::string>> waitForStart();
    /// Waits for `count` starts and takes them off: the arguments of each, in no particular order. What came where they
    /// did not come in time.
    std::vector<std::vector<std::string>> waitForStarts(std::size_t count);
    /// The latest start's environment, "NAME=value" each.
    std::vector<std::string> environment() const;
    /// What the program of the latest start found.
    std::map<std::string, std::string> facts() const;
    void forget() const;

private:
    std::string path_;
};

/// The applications that the session's user has chosen: for text (arguments as paths), for folders, and for pictures
/// (arguments as URLs). Made once, before anything asks for them.
struct Handlers {
    Recorder text;
    Recorder folder;
    Recorder picture;
};
Handlers& handlers();

}
