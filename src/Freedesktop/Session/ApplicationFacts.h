#pragma once

#include "Freedesktop/Session/ClientWindows.h"
#include "Freedesktop/Session/ProcessIdentity.h"
#include "Platform/RunningApplication.h"

#include <optional>
#include <string>
#include <vector>

namespace marrowick {

/// What was known of an application when the windows were last looked at.
struct ApplicationFacts {
    /// Tells applications apart; never shown.
    std::string key;
    std::optional<std::string> identifier;
    std::optional<std::string> name;
    std::optional<FileURL> bundleURL;
    ActivationPolicy policy = ActivationPolicy::regular;
    bool isActive = false;
    bool isHidden = false;
    bool isThisProgram = false;
    /// What the windows bring along; unknown where nobody has looked.
    std::optional<Image> windowIcon;
    std::vector<ClientWindow> windows;
    /// The processes of its windows on this machine. Not all of them are this program's to end.
    std::vector<ProcessIdentity> processes;
};

}
