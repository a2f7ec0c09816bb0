#pragma once

#include <cstddef>
#include <string_view>

namespace marrowick {

/// The number of bytes of the first character of `text`, which must not be empty. A character is one code point of
/// valid UTF-8 or one byte that is part of none.
std::size_t firstCharacterLength(std::string_view text);

/// Whether no byte of `text` is part of no character.
bool isValidUTF8(std::string_view text);

}
