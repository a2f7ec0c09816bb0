#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace marrowick {

/// Whether `bytes` begin with the mark of a binary property list.
bool isBinaryPropertyList(std::string_view bytes);

/// The binary half of `stringArrayFromPropertyList`; only when `isBinaryPropertyList(bytes)`.
std::optional<std::vector<std::string>> stringArrayFromBinaryPropertyList(std::string_view bytes);

}
