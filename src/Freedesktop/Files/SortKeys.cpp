#include "Freedesktop/Files/SortKeys.h"

#include "Freedesktop/Files/AsciiSortKeys.h"
#include "Freedesktop/Files/UnicodeText.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace marrowick {

namespace {

std::uint64_t startOf(unsigned char const* bytes, std::size_t size)
{
    std::uint64_t start = 0;
    std::memcpy(&start, bytes, std::min(size, sizeof start));
    if constexpr (std::endian::native == std::endian::little)
        start = __builtin_bswap64(start);
    return start;
}

}

SortKeys::SortKeys(std::vector<std::string_view> const& texts, UCollator const* collator, AsciiSortKeys const& ascii)
{
    keys_.reserve(texts.size());
    // Most keys are a little longer than their texts.
    std::size_t expected = 0;
    for (auto const text : texts)
        expected += text.size() + 8;
    bytes_.resize(expected);
    for (auto const text : texts)
        addAsciiOrCollatorKey(text, collator, ascii);
    utf16_ = {};
}

SortKeys::SortKeys(std::vector<std::string_view> const& texts)
{
    keys_.reserve(texts.size());
    for (auto const text : texts) {
        std::copy(text.begin(), text.end(), room(text.size()));
        finishKey(text.size());
    }
}

std::weak_ordering SortKeys::compare(std::size_t a, std::size_t b) const
{
    auto const& first = keys_[a];
    auto const& second = keys_[b];
    if (first.start != second.start)
        return first.start <=> second.start;
    int const order = std::memcmp(
        bytes_.data() + first.position, bytes_.data() + second.position, std::min(first.size, second.size));
    return order != 0 ? order <=> 0 : first.size <=> second.size;
}

void SortKeys::addAsciiOrCollatorKey(std::string_view text, UCollator const* collator, AsciiSortKeys const& ascii)
{
    if (auto const size = ascii.write(text, room(AsciiSortKeys::greatestKeySize(text.size()))); size > 0)
        finishKey(size);
    else
        addCollatorKey(text, collator);
}

void SortKeys::addCollatorKey(std::string_view text, UCollator const* collator)
{
    assignUtf16(utf16_, text);
    // Room enough for nearly all texts; the collator tells the size of a longer key.
    std::size_t expected = 4 * utf16_.size() + 64;
    for (;;) {
        auto const size = static_cast<std::size_t>(std::max(0,
            ucol_getSortKey(collator, utf16_.data(), static_cast<std::int32_t>(utf16_.size()), room(expected),
                static_cast<std::int32_t>(expected))));
        if (size <= expected) {
            finishKey(size);
            return;
        }
        expected = size;
    }
}

/// Memory for a key of at most `size` bytes, also for one of none, which `finishKey` makes the next key.
unsigned char* SortKeys::room(std::size_t size)
{
    if (bytes_.size() - filled_ <= size)
        bytes_.resize(std::max(filled_ + size + 1, 2 * bytes_.size()));
    return bytes_.data() + filled_;
}

void SortKeys::finishKey(std::size_t size)
{
    keys_.push_back({ .start = startOf(bytes_.data() + filled_, size), .position = filled_, .size = size });
    filled_ += size;
}

}
