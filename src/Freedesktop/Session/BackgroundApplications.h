#pragma once

#include "Freedesktop/Session/ApplicationList.h"

#include <vector>

namespace marrowick {

/// Appends the user's processes whose program belongs to an installed application that is not among `applications`, one
/// record per application, in the order in which they were started.
void appendApplicationsWithoutWindows(std::vector<ApplicationFacts>& applications, ApplicationRules const& rules);

}
