#pragma once

#include "Freedesktop/Session/ApplicationList.h"

#include <vector>

namespace marrowick {

/// The user's processes whose program belongs to an installed application that is not among `applications`, one record per
/// application, in the order in which they were started.
std::vector<ApplicationFacts> applicationsWithoutWindows(
    std::vector<ApplicationFacts> const& applications, ApplicationRules const& rules);

}
