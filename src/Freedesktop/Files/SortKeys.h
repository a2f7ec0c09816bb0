#pragma once

#include "Platform/Collation.h"

#include <cstdint>
#include <string>
#include <unicode/ucol.h>

namespace marrowick {

class AsciiSortKeys;

/// Texts as keys in one block of memory, ordered by their bytes.
class SortKeys final : public PreparedTexts {
public:
    /// Keys by `collator`, those of ASCII texts by `ascii` where that knows them.
    SortKeys(UCollator const* collator, AsciiSortKeys const& ascii);

    /// The texts themselves as keys.
    SortKeys() = default;

    void assign(std::vector<std::string_view> const& texts) override;
    std::weak_ordering compare(std::size_t a, std::size_t b) const override;
    void sort(std::span<std::size_t> positions) const override;

private:
    struct Key {
        /// The first bytes, the first of all in the highest byte: most comparisons end here.
        std::uint64_t start;
        std::size_t position;
        std::size_t size;
    };

    std::weak_ordering order(Key const& first, Key const& second) const;
    void addBytes(std::string_view text);
    void addAsciiOrCollatorKey(std::string_view text);
    void addCollatorKey(std::string_view text);
    unsigned char* room(std::size_t size);
    void grow(std::size_t size);
    void finishKey(std::size_t size);

    /// Both are null where the texts are their own keys.
    UCollator const* collator_ = nullptr;
    AsciiSortKeys const* ascii_ = nullptr;
    std::vector<Key> keys_;
    /// The keys one after the other; what is past `filled_` is room.
    std::vector<unsigned char> bytes_;
    std::size_t filled_ = 0;
    std::u16string utf16_;
};

}
