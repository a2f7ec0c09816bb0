#include "Actions/ScriptRunner.h"

#include "Platform/Platform.h"

#include <string>

namespace marrowick {

void ScriptRunner::run(
    FileURL const& script, std::vector<FileURL> const& selection, std::optional<FileURL> const& clickedWindow)
{
    auto& tasks = *platform().tasks;
    Task task;
    task.environment = tasks.environment();
    task.environment["MW_NARGS"] = std::to_string(selection.size());
    // A value that this process was started with speaks of another window.
    task.environment.erase("MW_CLICKWIN");
    if (clickedWindow)
        task.environment["MW_CLICKWIN"] = clickedWindow->path();

    task.arguments.push_back(script.path());
    if (script.pathExtension() == "sh") {
        task.executable = FileURL("/bin/sh");
        for (auto const& item : selection)
            task.arguments.push_back(item.path());
    } else if (script.pathExtension() == "scpt") {
        task.executable = FileURL("/usr/bin/osascript");
    } else {
        return;
    }
    if (auto const launched = tasks.launch(task); !launched)
        platform().log->write("Marrowick: failed to run " + script.path() + ": " + launched.error().message);
}

}
