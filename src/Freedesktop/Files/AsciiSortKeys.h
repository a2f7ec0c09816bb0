#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unicode/ucol.h>

namespace marrowick {

/// Writes sort keys of ASCII texts without going through the collator: byte for byte those that `ucol_getSortKey` makes,
/// so that they are compared with the keys of all other texts.
///
/// It works for a collator of secondary strength with numeric order, without case level, whose variable characters are
/// not ignored. The weights are read from the collator's own keys of single characters; a text for which a locale has
/// more to say (a contraction such as the Czech "ch", a character with a weight of unusual form) is left to the
/// collator, and so are all texts when the keys of a set of samples come out differently.
class AsciiSortKeys {
public:
    /// Learns the weights of `collator`, which is not needed afterwards.
    explicit AsciiSortKeys(UCollator const* collator);

    /// The bytes that the key of a text of `length` bytes takes at most.
    static constexpr std::size_t greatestKeySize(std::size_t length) { return 6 * length + 8; }

    /// Writes the key of `text` with its final zero byte to `key`, which has room for `greatestKeySize`, and returns its
    /// size; zero when the key has to be asked of the collator.
    std::size_t write(std::string_view text, unsigned char* key) const;

    /// False where every text is left to the collator.
    bool isUsable() const { return isUsable_; }

private:
    enum class Form : std::uint8_t {
        /// Left to the collator.
        unknown,
        /// Has no weight.
        ignorable,
        digit,
        plain,
    };

    struct Weight {
        /// The primary weight's bytes, the first in the highest byte.
        std::uint32_t primary = 0;
        std::uint8_t size = 0;
        Form form = Form::unknown;
        /// Whether a contraction begins with the character.
        bool mayContract = false;
    };

    /// The bytes of a primary weight in the order of the key, and how many they are. None where the character does not
    /// have the same ones whatever stands beside it.
    struct PlainBytes {
        std::array<unsigned char, 4> bytes {};
        std::uint32_t size = 0;
    };

    class KeyWriter;

    static constexpr std::size_t characters = 128;

    bool learnContractions(UCollator const* collator);
    static Weight learnWeight(UCollator const* collator, unsigned char character);
    void gatherPlainBytes();
    bool learnDigits(UCollator const* collator);
    bool agreesOnSamples(UCollator const* collator) const;
    bool isUnknownAt(std::string_view text, std::size_t position) const;

    std::array<Weight, characters> weights_;
    /// By the value of the byte.
    std::array<PlainBytes, 256> plainBytes_;
    /// The first two characters of each contraction, as `first * characters + second`.
    std::bitset<characters * characters> contractionStarts_;
    std::uint32_t numericLead_ = 0;
    bool isUsable_ = false;
};

}
