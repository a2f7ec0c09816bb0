#include "Support/Characters.h"

#include <cstdint>
#include <cstring>

namespace marrowick {

namespace {

struct Sequence {
    std::size_t length;
    unsigned char secondLowest;
    unsigned char secondHighest;
};

/// What may follow `lead`. The bounds of the second byte leave out overlong forms, surrogates and what lies above
/// U+10FFFF.
Sequence sequenceOf(unsigned char lead)
{
    if (lead < 0xC2 || lead > 0xF4)
        return { 1, 0, 0 };
    if (lead < 0xE0)
        return { 2, 0x80, 0xBF };
    if (lead < 0xF0) {
        return { 3, static_cast<unsigned char>(lead == 0xE0 ? 0xA0 : 0x80),
            static_cast<unsigned char>(lead == 0xED ? 0x9F : 0xBF) };
    }
    return { 4, static_cast<unsigned char>(lead == 0xF0 ? 0x90 : 0x80),
        static_cast<unsigned char>(lead == 0xF4 ? 0x8F : 0xBF) };
}

/// The length of a part at the front, in whole words, that has nothing but ASCII characters; most texts have no others.
std::size_t asciiPrefixLength(std::string_view text)
{
    constexpr std::uint64_t highBits = 0x8080808080808080;
    std::size_t length = 0;
    for (std::uint64_t word = 0; length + sizeof word <= text.size(); length += sizeof word) {
        std::memcpy(&word, text.data() + length, sizeof word);
        if ((word & highBits) != 0)
            break;
    }
    return length;
}

}

std::size_t firstCharacterLength(std::string_view text)
{
    auto const byteAt = [&](std::size_t index) { return static_cast<unsigned char>(text[index]); };
    auto const sequence = sequenceOf(byteAt(0));
    if (sequence.length == 1 || text.size() < sequence.length)
        return 1;
    if (byteAt(1) < sequence.secondLowest || byteAt(1) > sequence.secondHighest)
        return 1;
    for (std::size_t index = 2; index < sequence.length; ++index) {
        if ((byteAt(index) & 0xC0) != 0x80)
            return 1;
    }
    return sequence.length;
}

bool isValidUTF8(std::string_view text)
{
    text.remove_prefix(asciiPrefixLength(text));
    while (!text.empty()) {
        auto const length = firstCharacterLength(text);
        if (length == 1 && static_cast<unsigned char>(text.front()) >= 0x80)
            return false;
        text.remove_prefix(length);
    }
    return true;
}

}
