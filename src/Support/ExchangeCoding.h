#pragma once

#include "Support/MoveRequest.h"
#include "Support/Snapshot.h"

#include <optional>
#include <string>
#include <string_view>

namespace marrowick {

// The two JSON records (RFC 8259) of the exchange with the extension inside the file manager.

/// Compact, keys in their fixed order, every "/" of a text written as "\/", the date in UTC with whole seconds. Absent where
/// a text is not UTF-8 or the date has no year of four digits.
std::optional<std::string> encode(Snapshot const& snapshot);

/// The same for a request; absent where a text is not UTF-8.
std::optional<std::string> encode(MoveRequest const& request);

/// Absent for everything that is not exactly such a record: other keys are ignored, a missing one or a value of another
/// type is not. Made for files that anybody may have written; of a key that stands there several times the last counts.
std::optional<Snapshot> decodeSnapshot(std::string_view bytes);
std::optional<MoveRequest> decodeMoveRequest(std::string_view bytes);

}
