#pragma once

#include <cstdint>

namespace marrowick {

/// The order of an items folder without an order of its own.
enum class SortMode : std::uint8_t {
    alphabetical,
    /// Applications, then folders, then documents, each by name.
    kindThenAlphabetical,
    /// The newest first.
    dateModified,
};

}
