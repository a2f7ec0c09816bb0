#include "Freedesktop/Session/FreedesktopTasks.h"

#include "Freedesktop/Files/FileErrors.h"
#include "Freedesktop/Session/ChildProcess.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string_view>

namespace marrowick {

namespace {

ChildProcess childFor(Task const& task)
{
    ChildProcess child;
    child.command.reserve(task.arguments.size() + 1);
    child.command.push_back(task.executable.path());
    child.command.insert(child.command.end(), task.arguments.begin(), task.arguments.end());
    child.environment.reserve(task.environment.size());
    for (auto const& [name, value] : task.environment) {
        auto& variable = child.environment.emplace_back();
        variable.reserve(name.size() + 1 + value.size());
        variable.append(name).append(1, '=').append(value);
    }
    child.standardInput = StandardInput::inherited;
    return child;
}

/// A zero byte would end a text early, and what started would not be what was asked for.
bool areWhole(std::vector<std::string> const& texts)
{
    return std::all_of(
        texts.begin(), texts.end(), [](std::string const& text) { return text.find('\0') == std::string::npos; });
}

int start(ChildProcess const& child)
{
    if (!areWhole(child.command) || !areWhole(child.environment))
        return EINVAL;
    // Other names would be looked up in PATH.
    if (!child.command.front().starts_with('/'))
        return ENOENT;
    return startDetached(child);
}

}

TaskEnvironment FreedesktopTasks::environment() const
{
    TaskEnvironment environment;
    for (auto variable = environ; variable && *variable; ++variable) {
        std::string_view const entry(*variable);
        auto const equals = entry.find('=');
        // Of doubled names the first one counts, as it does for whoever asks by name.
        if (equals != std::string_view::npos)
            environment.emplace(entry.substr(0, equals), entry.substr(equals + 1));
    }
    return environment;
}

Result<void> FreedesktopTasks::launch(Task const& task)
{
    int const error = start(childFor(task));
    if (error != 0)
        return fileError(error, "Could not start", task.executable);
    return {};
}

}
