#include "Freedesktop/Session/ChildProcess.h"

#include <glib.h>

#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

#include <csignal>
#include <string_view>

namespace marrowick {

namespace {

class SpawnAttributes {
public:
    SpawnAttributes()
    {
        posix_spawnattr_init(&attributes_);
        sigset_t signals;
        sigfillset(&signals);
        posix_spawnattr_setsigdefault(&attributes_, &signals);
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&attributes_, &signals);
        posix_spawnattr_setflags(
            &attributes_, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK | short { POSIX_SPAWN_SETSID });
    }
    ~SpawnAttributes() { posix_spawnattr_destroy(&attributes_); }
    SpawnAttributes(SpawnAttributes const&) = delete;
    SpawnAttributes& operator=(SpawnAttributes const&) = delete;

    posix_spawnattr_t const* get() const { return &attributes_; }

private:
    posix_spawnattr_t attributes_ {};
};

class SpawnFileActions {
public:
    explicit SpawnFileActions(ChildProcess const& child)
    {
        posix_spawn_file_actions_init(&actions_);
        if (child.standardInput == StandardInput::empty)
            posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1);
        if (!child.workingDirectory.empty())
            posix_spawn_file_actions_addchdir_np(&actions_, child.workingDirectory.c_str());
    }
    ~SpawnFileActions() { posix_spawn_file_actions_destroy(&actions_); }
    SpawnFileActions(SpawnFileActions const&) = delete;
    SpawnFileActions& operator=(SpawnFileActions const&) = delete;

    posix_spawn_file_actions_t const* get() const { return &actions_; }

private:
    posix_spawn_file_actions_t actions_ {};
};

/// The strings as the system wants them, valid as long as they stay as they are.
std::vector<char*> pointersTo(std::vector<std::string> const& strings)
{
    std::vector<char*> pointers;
    pointers.reserve(strings.size() + 1);
    // Nobody writes to them; the type is older than the word for it.
    for (auto const& string : strings)
        pointers.push_back(const_cast<char*>(string.c_str()));
    pointers.push_back(nullptr);
    return pointers;
}

}

std::vector<std::string> environmentWith(EnvironmentChanges const& changes)
{
    std::vector<std::string> environment;
    for (auto variable = environ; *variable; ++variable) {
        std::string_view const entry(*variable);
        if (!changes.contains(std::string(entry.substr(0, entry.find('=')))))
            environment.emplace_back(entry);
    }
    for (auto const& [name, value] : changes) {
        if (value)
            environment.push_back(name + "=" + *value);
    }
    return environment;
}

int startDetached(ChildProcess const& child)
{
    SpawnAttributes const attributes;
    SpawnFileActions const actions(child);
    pid_t pid = 0;
    int const error = posix_spawnp(&pid, child.command.front().c_str(), actions.get(), attributes.get(),
        pointersTo(child.command).data(), pointersTo(child.environment).data());
    if (error != 0)
        return error;
    // Collects the exit status, so that no zombie is left; nobody asks for it.
    g_child_watch_add(
        pid, [](GPid, int, void*) {}, nullptr);
    return 0;
}

}
