#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Puts property lists together byte by byte, also ones that no writer would produce.
namespace marrowick::samples {

inline std::string bytesFromHex(std::string_view digits)
{
    std::string bytes;
    for (std::size_t at = 0; at + 1 < digits.size(); at += 2)
        bytes.push_back(static_cast<char>(std::stoi(std::string(digits.substr(at, 2)), nullptr, 16)));
    return bytes;
}

inline std::string bigEndian(std::uint64_t number, unsigned size)
{
    std::string bytes;
    for (unsigned at = size; at-- > 0;)
        bytes.push_back(at < 8 ? static_cast<char>(number >> (8 * at) & 0xFF) : '\0');
    return bytes;
}

/// The first bytes of an object: its kind and how many units or members it has.
inline std::string binaryMark(unsigned kind, std::uint64_t count)
{
    if (count < 15)
        return std::string(1, static_cast<char>(kind << 4 | count));
    return std::string(1, static_cast<char>(kind << 4 | 0xF)) + "\x13" + bigEndian(count, 8);
}

inline std::string binaryAscii(std::string_view text)
{
    return binaryMark(0x5, text.size()) + std::string(text);
}

inline std::string binaryUtf16(std::u16string_view text)
{
    auto bytes = binaryMark(0x6, text.size());
    for (auto const unit : text)
        bytes += bigEndian(unit, 2);
    return bytes;
}

inline std::string binaryArray(std::vector<std::uint64_t> const& references, unsigned referenceSize = 1)
{
    auto bytes = binaryMark(0xA, references.size());
    for (auto const reference : references)
        bytes += bigEndian(reference, referenceSize);
    return bytes;
}

struct BinaryTrailer {
    unsigned offsetSize = 4;
    unsigned referenceSize = 1;
    std::uint64_t objectCount = 0;
    std::uint64_t root = 0;
    std::uint64_t tableOffset = 0;

    std::string bytes() const
    {
        return std::string(6, '\0') + static_cast<char>(offsetSize) + static_cast<char>(referenceSize)
            + bigEndian(objectCount, 8) + bigEndian(root, 8) + bigEndian(tableOffset, 8);
    }
};

/// A whole list of the given bytes of objects that start at the given offsets from the first object.
inline std::string binaryList(
    std::string const& objects, std::vector<std::uint64_t> const& offsets, unsigned referenceSize = 1)
{
    BinaryTrailer trailer;
    trailer.referenceSize = referenceSize;
    trailer.objectCount = offsets.size();
    trailer.tableOffset = 8 + objects.size();
    auto bytes = "bplist00" + objects;
    for (auto const offset : offsets)
        bytes += bigEndian(8 + offset, trailer.offsetSize);
    return bytes + trailer.bytes();
}

/// A whole list of objects that follow each other; the first is the root.
inline std::string binaryList(std::vector<std::string> const& objects, unsigned referenceSize = 1)
{
    std::string all;
    std::vector<std::uint64_t> offsets;
    for (auto const& object : objects) {
        offsets.push_back(all.size());
        all += object;
    }
    return binaryList(all, offsets, referenceSize);
}

inline std::string repeated(std::string_view piece, std::size_t size)
{
    std::string bytes;
    bytes.reserve(size + piece.size());
    while (bytes.size() < size)
        bytes += piece;
    return bytes;
}

/// UTF-16 of ASCII text, with a byte order mark.
inline std::string utf16(std::string_view text, bool littleEndian)
{
    std::string bytes = littleEndian ? "\xFF\xFE" : "\xFE\xFF";
    for (char const character : text)
        bytes += littleEndian ? std::string { character, '\0' } : std::string { '\0', character };
    return bytes;
}

}
