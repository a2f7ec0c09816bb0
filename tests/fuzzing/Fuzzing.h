#pragma once

#include <string_view>

namespace marrowick {

/// What a target does with one input, whatever its bytes: it returns, or it ends the process through `require`. Each
/// target defines it.
void fuzz(std::string_view input);

/// Ends the process, after a line that says what does not hold.
void require(bool holds, char const* fact);

}
