#include "Freedesktop/Files/UnicodeText.h"

#include <algorithm>
#include <limits>
#include <unicode/ustring.h>

namespace marrowick {

namespace {

/// The library counts in 32 bits; a text beyond that is cut, which leaves room for the counts derived from it.
constexpr std::size_t longestText = std::numeric_limits<std::int32_t>::max() / 8;

constexpr UChar32 replacementCharacter = 0xFFFD;

}

void assignUtf16(std::u16string& result, std::string_view text)
{
    text = text.substr(0, longestText);
    result.resize(text.size());
    std::int32_t length = 0;
    UErrorCode error = U_ZERO_ERROR;
    u_strFromUTF8WithSub(result.data(), static_cast<std::int32_t>(result.size()), &length, text.data(),
        static_cast<std::int32_t>(text.size()), replacementCharacter, nullptr, &error);
    result.resize(U_SUCCESS(error) ? static_cast<std::size_t>(length) : 0);
}

std::u16string utf16Of(std::string_view text)
{
    std::u16string result;
    assignUtf16(result, text);
    return result;
}

}
