#pragma once

#include "Support/MoveRequest.h"

#include <string>

namespace marrowick::companion {

/// Drops a request into the folder where the two programs exchange files: written whole under another name, then renamed
/// to a name that nothing else has. False where it could not be; then nothing is left behind.
bool dropRequest(std::string const& folder, MoveRequest const& request);

}
