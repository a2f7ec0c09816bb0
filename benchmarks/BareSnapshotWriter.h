#pragma once

#include "Support/Snapshot.h"

#include <string>
#include <string_view>

namespace marrowick::benchmarks {

/// Writes a snapshot as somebody would who needs nothing but these records: character by character, without looking whether a
/// text is UTF-8.
std::string writeSnapshot(Snapshot const& snapshot, std::string_view generated);

}
