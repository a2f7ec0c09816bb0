#pragma once

#include <string>
#include <string_view>

namespace marrowick {

/// `text` in the Unicode library's own encoding, each ill-formed sequence of it as one U+FFFD.
std::u16string utf16Of(std::string_view text);

/// The same, into `result`, whose memory is used again.
void assignUtf16(std::u16string& result, std::string_view text);

}
