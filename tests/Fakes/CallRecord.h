#pragma once

#include <string>
#include <vector>

namespace marrowick {

/// What was asked of the desktop, in one order across its services: "open /a", "move /a to /b". What a service is only
/// asked about is not among it.
using CallRecord = std::vector<std::string>;

}
