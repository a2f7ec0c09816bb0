#pragma once

#include <string>

namespace marrowick {

/// Ties an entry to the application that the user works in, by a fragment of that application's identifier.
struct AppConditional {
    /// The entry is shown where the fragment does not occur.
    bool negated = false;
    std::string identifierFragment;
    friend bool operator==(AppConditional const&, AppConditional const&) = default;
};

}
