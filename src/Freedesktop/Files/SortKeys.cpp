#include "Freedesktop/Files/SortKeys.h"

#include "Freedesktop/Files/AsciiSortKeys.h"
#include "Freedesktop/Files/UnicodeText.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace marrowick {

namespace {

constexpr std::size_t wordSize = sizeof(std::uint64_t);

/// The first `size` bytes as a number that orders as they do, zeros in the place of those that are missing. A whole word
/// is read.
std::uint64_t wordOf(unsigned char const* bytes, std::size_t size)
{
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, wordSize);
    if constexpr (std::endian::native == std::endian::little)
        word = __builtin_bswap64(word);
    if (size >= wordSize)
        return word;
    return size == 0 ? 0 : word >> (8 * (wordSize - size)) << (8 * (wordSize - size));
}

}

SortKeys::SortKeys(UCollator const* collator, AsciiSortKeys const& ascii)
    : collator_(collator)
    , ascii_(&ascii)
{
}

/// Memory for a key of at most `size` bytes, which `finishKey` makes the next key. A word can be read at its end.
inline unsigned char* SortKeys::room(std::size_t size)
{
    if (bytes_.size() - filled_ < size + wordSize)
        grow(filled_ + size + wordSize);
    return bytes_.data() + filled_;
}

inline void SortKeys::finishKey(std::size_t size)
{
    keys_.push_back({ .start = 0, .position = filled_, .size = size });
    filled_ += size;
}

inline void SortKeys::addAsciiOrCollatorKey(std::string_view text)
{
    if (auto const size = ascii_->write(text, room(AsciiSortKeys::greatestKeySize(text.size()))); size > 0)
        finishKey(size);
    else
        addCollatorKey(text);
}

void SortKeys::assign(std::vector<std::string_view> const& texts)
{
    keys_.clear();
    keys_.reserve(texts.size());
    filled_ = 0;
    // Most keys are a little longer than their texts.
    std::size_t expected = 0;
    for (auto const text : texts)
        expected += text.size() + 8;
    if (bytes_.size() < expected)
        bytes_.resize(expected);
    for (auto const text : texts) {
        if (collator_)
            addAsciiOrCollatorKey(text);
        else
            addBytes(text);
    }
    utf16_ = {};
    // Right after the bytes were written one by one the processor would have to wait for them.
    for (auto& key : keys_)
        key.start = wordOf(bytes_.data() + key.position, key.size);
}

std::weak_ordering SortKeys::compare(std::size_t a, std::size_t b) const
{
    return order(keys_[a], keys_[b]);
}

void SortKeys::sort(std::span<std::size_t> positions) const
{
    std::sort(positions.begin(), positions.end(), [this](std::size_t a, std::size_t b) {
        auto const comparison = order(keys_[a], keys_[b]);
        return comparison != 0 ? comparison < 0 : a < b;
    });
}

inline std::weak_ordering SortKeys::order(Key const& first, Key const& second) const
{
    if (first.start != second.start)
        return first.start <=> second.start;
    auto const common = std::min(first.size, second.size);
    auto const* const a = bytes_.data() + first.position;
    auto const* const b = bytes_.data() + second.position;
    // Most keys differ in the next few bytes.
    for (std::size_t done = wordSize; done < common; done += wordSize) {
        auto const left = wordOf(a + done, common - done);
        auto const right = wordOf(b + done, common - done);
        if (left != right)
            return left <=> right;
    }
    return first.size <=> second.size;
}

void SortKeys::addBytes(std::string_view text)
{
    std::copy(text.begin(), text.end(), room(text.size()));
    finishKey(text.size());
}

void SortKeys::addCollatorKey(std::string_view text)
{
    assignUtf16(utf16_, text);
    // Room enough for nearly all texts; the collator tells the size of a longer key.
    std::size_t expected = 4 * utf16_.size() + 64;
    for (;;) {
        auto const size = static_cast<std::size_t>(std::max(0,
            ucol_getSortKey(collator_, utf16_.data(), static_cast<std::int32_t>(utf16_.size()), room(expected),
                static_cast<std::int32_t>(expected))));
        if (size <= expected) {
            finishKey(size);
            return;
        }
        expected = size;
    }
}

void SortKeys::grow(std::size_t size)
{
    bytes_.resize(std::max(size, 2 * bytes_.size()));
}

}
