#pragma once

#include "Freedesktop/Session/ApplicationFacts.h"
#include "Freedesktop/Session/ClientWindows.h"
#include "Freedesktop/Session/DesktopEntries.h"

#include <functional>
#include <string>
#include <vector>

namespace marrowick {

/// How windows are recognised as belonging to applications.
struct ApplicationRules {
    DesktopEntries& entries;
    /// This program's own identifier, which its windows have whatever else they say.
    std::string ownIdentifier;
    pid_t ownPID = 0;
    /// The file that a process runs; empty where it cannot be told.
    std::function<std::string(pid_t)> executableOf;
};

/// Whether `window` is one of this program's.
bool isOwnWindow(ClientWindow const& window, ApplicationRules const& rules);

/// The application of a single window. All but what depends on the application's other windows is known.
ApplicationFacts factsOfWindow(ClientWindow const& window, ApplicationRules const& rules);

/// One record per application, each where its first window stands.
std::vector<ApplicationFacts> applicationsOfWindows(ClientWindows const& windows, ApplicationRules const& rules);

}
