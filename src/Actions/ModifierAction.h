#pragma once

#include <cstdint>

namespace marrowick {

/// What a key does with the highlighted entry of an open menu.
enum class ModifierAction : std::uint8_t {
    /// Asks, then moves a file to the trash; asks an application to quit.
    trash = 0,
    /// As `trash` for a file; makes an application quit. No key leads here.
    forceQuit = 1,
    reveal = 2,
    /// The file manager's own information window.
    finderInfo = 3,
    quickLook = 4,
    /// As `reveal` and `quickLook`, for other keys.
    revealAlternate = 5,
    quickLookAlternate = 6,
    /// The program's own Info window.
    infoWindow = 7,
};

}
