#include "Support/BinaryPropertyList.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace marrowick {

namespace {

using Strings = std::vector<std::string>;

constexpr std::string_view binaryMark = "bplist00";

/// What the members of a binary list may add up to, as a multiple of the list's size. Members that name the same string
/// add its length each time, a few bytes of reference for any amount of text.
constexpr std::uint64_t expansionLimit = 16;

/// The big-endian number that fills `bytes`, which are at most eight.
std::uint64_t numberFrom(std::string_view bytes)
{
    std::uint64_t number = 0;
    for (char const byte : bytes)
        number = number << 8 | static_cast<unsigned char>(byte);
    return number;
}

void appendUtf8(std::string& text, char32_t character)
{
    auto const append = [&](char32_t byte) { text.push_back(static_cast<char>(byte)); };
    auto const appendTail = [&](int shift) { append(0x80 | (character >> shift & 0x3F)); };
    if (character < 0x80) {
        append(character);
    } else if (character < 0x800) {
        append(0xC0 | character >> 6);
        appendTail(0);
    } else if (character < 0x10000) {
        append(0xE0 | character >> 12);
        appendTail(6);
        appendTail(0);
    } else {
        append(0xF0 | character >> 18);
        appendTail(12);
        appendTail(6);
        appendTail(0);
    }
}

std::optional<std::string> textFromAscii(std::string_view bytes)
{
    if (!std::all_of(bytes.begin(), bytes.end(), [](char byte) { return static_cast<unsigned char>(byte) < 0x80; }))
        return std::nullopt;
    return std::string(bytes);
}

/// Absent where a surrogate stands alone.
std::optional<std::string> textFromUtf16(std::string_view bytes)
{
    auto const unitAt = [&](std::size_t at) { return static_cast<char32_t>(numberFrom(bytes.substr(at, 2))); };
    auto const isSurrogate = [](char32_t unit, char32_t first) { return unit >= first && unit < first + 0x400; };
    std::string text;
    for (std::size_t at = 0; at < bytes.size(); at += 2) {
        auto const unit = unitAt(at);
        if (isSurrogate(unit, 0xDC00))
            return std::nullopt;
        if (!isSurrogate(unit, 0xD800)) {
            appendUtf8(text, unit);
            continue;
        }
        at += 2;
        if (at == bytes.size() || !isSurrogate(unitAt(at), 0xDC00))
            return std::nullopt;
        appendUtf8(text, 0x10000 + ((unit - 0xD800) << 10) + (unitAt(at) - 0xDC00));
    }
    return text;
}

/// A binary list: the mark, the objects, the table of the objects' offsets, and a trailer that tells where the table is
/// and which object is the root. Every number in it may be wrong.
class BinaryReader {
public:
    explicit BinaryReader(std::string_view bytes)
        : bytes_(bytes)
        , budget_(bytes.size() * expansionLimit)
    {
    }

    std::optional<Strings> read()
    {
        auto const root = readTrailer() ? objectAt(rootIndex_) : std::nullopt;
        if (!root || root->kind != 0xA || root->count > root->content.size() / referenceSize_)
            return std::nullopt;
        Strings strings;
        strings.reserve(root->count);
        for (std::size_t member = 0; member < root->count; ++member) {
            auto text = textOf(numberFrom(root->content.substr(member * referenceSize_, referenceSize_)));
            if (!text)
                return std::nullopt;
            strings.push_back(std::move(*text));
        }
        return strings;
    }

private:
    struct Object {
        /// The upper half of the object's first byte.
        unsigned kind = 0;
        /// How many members or units the object claims to have.
        std::uint64_t count = 0;
        /// All that lies between the count and the end of the objects, the object's own part first.
        std::string_view content;
    };

    bool readTrailer()
    {
        constexpr std::size_t trailerSize = 32;
        if (bytes_.size() < binaryMark.size() + trailerSize)
            return false;
        auto const tableEnd = bytes_.size() - trailerSize;
        auto const trailer = bytes_.substr(tableEnd);
        offsetSize_ = static_cast<std::size_t>(numberFrom(trailer.substr(6, 1)));
        referenceSize_ = static_cast<std::size_t>(numberFrom(trailer.substr(7, 1)));
        auto const objectCount = numberFrom(trailer.substr(8, 8));
        auto const rootIndex = numberFrom(trailer.substr(16, 8));
        auto const tableOffset = numberFrom(trailer.substr(24, 8));
        auto const isSize = [](std::size_t size) { return size >= 1 && size <= sizeof(std::uint64_t); };
        if (!isSize(offsetSize_) || !isSize(referenceSize_))
            return false;
        if (tableOffset < binaryMark.size() || tableOffset > tableEnd)
            return false;
        if (objectCount > (tableEnd - tableOffset) / offsetSize_)
            return false;
        objects_ = bytes_.substr(0, tableOffset);
        offsets_ = bytes_.substr(tableOffset, objectCount * offsetSize_);
        rootIndex_ = rootIndex;
        return true;
    }

    std::optional<Object> objectAt(std::uint64_t index) const
    {
        if (index >= offsets_.size() / offsetSize_)
            return std::nullopt;
        auto const offset = numberFrom(offsets_.substr(index * offsetSize_, offsetSize_));
        if (offset < binaryMark.size() || offset >= objects_.size())
            return std::nullopt;
        unsigned const first = static_cast<unsigned char>(objects_[offset]);
        Object object { first >> 4, first & 0xF, objects_.substr(offset + 1) };
        if (object.count == 0xF && !readLongCount(object))
            return std::nullopt;
        return object;
    }

    /// A count of fifteen or more follows as an integer object.
    static bool readLongCount(Object& object)
    {
        if (object.content.empty())
            return false;
        auto const mark = static_cast<unsigned char>(object.content.front());
        if (mark < 0x10 || mark > 0x13)
            return false;
        auto const size = std::size_t { 1 } << (mark & 0xFU);
        if (object.content.size() < 1 + size)
            return false;
        object.count = numberFrom(object.content.substr(1, size));
        object.content.remove_prefix(1 + size);
        return true;
    }

    std::optional<std::string> textOf(std::uint64_t index)
    {
        auto const object = objectAt(index);
        if (!object || (object->kind != 0x5 && object->kind != 0x6))
            return std::nullopt;
        std::size_t const unitSize = object->kind == 0x5 ? 1 : 2;
        if (object->count > object->content.size() / unitSize)
            return std::nullopt;
        auto const encoded = object->content.substr(0, object->count * unitSize);
        if (encoded.size() > budget_)
            return std::nullopt;
        budget_ -= encoded.size();
        return object->kind == 0x5 ? textFromAscii(encoded) : textFromUtf16(encoded);
    }

    std::string_view bytes_;
    std::uint64_t budget_;
    std::string_view objects_;
    std::string_view offsets_;
    std::size_t offsetSize_ = 1;
    std::size_t referenceSize_ = 1;
    std::uint64_t rootIndex_ = 0;
};

}

bool isBinaryPropertyList(std::string_view bytes)
{
    return bytes.starts_with(binaryMark);
}

std::optional<Strings> stringArrayFromBinaryPropertyList(std::string_view bytes)
{
    return BinaryReader(bytes).read();
}

}
