// The file of a folder that lists its entries in the user's order.

#include "fuzzing/Fuzzing.h"

#include "Support/Characters.h"
#include "Support/PropertyList.h"
#include "Support/PropertyListBytes.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace marrowick {

namespace {

using Strings = std::vector<std::string>;

bool isAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}

/// Of valid UTF-8.
char32_t takeCharacter(std::string_view& text)
{
    auto const length = firstCharacterLength(text);
    auto const lead = static_cast<unsigned char>(text.front());
    char32_t character = length == 1 ? lead : lead & (0xFFU >> (length + 1));
    for (std::size_t index = 1; index < length; ++index)
        character = character << 6 | (static_cast<unsigned char>(text[index]) & 0x3FU);
    text.remove_prefix(length);
    return character;
}

std::u16string utf16Of(std::string_view text)
{
    std::u16string units;
    while (!text.empty()) {
        auto const character = takeCharacter(text);
        if (character < 0x10000) {
            units += static_cast<char16_t>(character);
        } else {
            units += static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10));
            units += static_cast<char16_t>(0xDC00 + ((character - 0x10000) & 0x3FF));
        }
    }
    return units;
}

std::string writtenBinary(Strings const& strings)
{
    std::vector<std::uint64_t> references(strings.size());
    std::vector<std::string> objects(1);
    for (auto const& string : strings) {
        references[objects.size() - 1] = objects.size();
        objects.push_back(isAscii(string) ? samples::binaryAscii(string) : samples::binaryUtf16(utf16Of(string)));
    }
    objects.front() = samples::binaryArray(references, 4);
    return samples::binaryList(objects, 4);
}

/// Absent where a character has no place in XML. Every character is written by its number.
std::optional<std::string> writtenXml(Strings const& strings)
{
    std::string xml = "<plist><array>";
    for (std::string_view string : strings) {
        xml += "<string>";
        while (!string.empty()) {
            auto const character = takeCharacter(string);
            bool const isControl = character < 0x20 && character != '\t' && character != '\n' && character != '\r';
            if (isControl || character == 0xFFFE || character == 0xFFFF)
                return std::nullopt;
            xml += "&#" + std::to_string(static_cast<unsigned>(character)) + ';';
        }
        xml += "</string>";
    }
    return xml + "</array></plist>";
}

/// No member costs less than a byte, and none brings more text than a few bytes for each of the file's.
void checkSize(Strings const& strings, std::size_t inputSize)
{
    std::size_t length = 0;
    for (auto const& string : strings) {
        require(isValidUTF8(string), "the names are UTF-8");
        length += string.size();
    }
    require(strings.size() <= inputSize, "there are no more names than bytes");
    require(length <= 24 * inputSize, "the names are no longer than the file explains");
}

/// Any text at all makes names that both forms bring back.
void checkWritten(Strings const& names)
{
    require(stringArrayFromPropertyList(writtenBinary(names)) == names, "the names survive a binary list");
    if (auto const xml = writtenXml(names))
        require(stringArrayFromPropertyList(*xml) == names, "the names survive an XML list");
}

Strings linesOf(std::string_view text)
{
    Strings lines(1);
    for (char const byte : text) {
        if (byte == '\n')
            lines.emplace_back();
        else
            lines.back() += byte;
    }
    return lines;
}

}

void fuzz(std::string_view input)
{
    if (isValidUTF8(input))
        checkWritten(linesOf(input));
    auto const strings = stringArrayFromPropertyList(input);
    if (!strings)
        return;
    checkSize(*strings, input.size());
    checkWritten(*strings);
    if (!input.starts_with("bplist00"))
        require(!stringArrayFromPropertyList(input.substr(0, input.rfind('>'))), "XML that is cut off is no list");
}

}
