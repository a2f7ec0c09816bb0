#include "Freedesktop/Files/AsciiSortKeys.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <memory>
#include <string>
#include <unicode/uset.h>

namespace marrowick {

namespace {

// The bytes of a sort key that do not depend on the locale. A key is the primary weights, a separator, the secondary
// weights and a final zero. Only ASCII characters with the common secondary weight are handled, so the secondary weights
// are a count: each full row of common weights is one byte, and the rest is told by the last byte's distance from
// `shortRowOfCommons`.
constexpr unsigned char levelSeparator = 0x01;
constexpr unsigned char shortRowOfCommons = 0x05;
constexpr unsigned char fullRowOfCommons = 0x25;
constexpr std::size_t commonsInFullRow = 33;

// Numbers. All weights have one lead byte. The second byte tells the size class, so that a greater number has a greater
// weight; small values are written in base 254 with digits from 2 on, great ones as pairs of decimal digits.
constexpr std::uint32_t oneByteValues = 74;
constexpr std::uint32_t twoByteLeads = 40;
constexpr std::uint32_t threeByteLeads = 16;
constexpr std::uint32_t base = 254;
constexpr std::uint32_t firstBaseDigit = 2;
constexpr std::uint32_t fewestPairs = 4;
constexpr std::uint32_t fewestPairsMark = firstBaseDigit + oneByteValues + twoByteLeads + threeByteLeads;
constexpr std::size_t digitsInPlainValue = 7;
constexpr std::size_t digitsInSegment = 254;

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

std::string keyOf(UCollator const* collator, std::string_view ascii)
{
    std::u16string const text(ascii.begin(), ascii.end());
    std::string key(8 * ascii.size() + 64, '\0');
    auto const size = ucol_getSortKey(collator, text.data(), static_cast<std::int32_t>(text.size()),
        reinterpret_cast<std::uint8_t*>(key.data()), static_cast<std::int32_t>(key.size()));
    key.resize(std::min(static_cast<std::size_t>(std::max(size, 0)), key.size()));
    return key;
}

/// A key whose secondary weights are `count` common ones.
std::string keyWithCommons(std::string_view primary, unsigned char count)
{
    std::string key(primary);
    key += static_cast<char>(levelSeparator);
    if (count > 0)
        key += static_cast<char>(shortRowOfCommons + count - 1);
    return key + '\0';
}

}

/// Appends to one key.
class AsciiSortKeys::KeyWriter {
public:
    KeyWriter(unsigned char* key, std::uint32_t numericLead)
        : start_(key)
        , next_(key)
        , numericLead_(numericLead)
    {
    }

    void add(Weight weight) { addBytes(weight.primary, weight.size); }

    /// Adds the weights at the beginning of `text` that are in `plain`, and returns of how many characters they are. All
    /// four bytes are written, since that is one step; the room for a key allows it.
    std::size_t addPlain(std::string_view text, std::array<PlainBytes, 256> const& plain)
    {
        // What is written could be the members, for all that the compiler knows.
        auto* next = next_;
        std::size_t count = 0;
        for (; count < text.size(); ++count) {
            auto const& weight = plain[static_cast<unsigned char>(text[count])];
            if (weight.size == 0)
                break;
            std::memcpy(next, weight.bytes.data(), weight.bytes.size());
            next += weight.size;
        }
        next_ = next;
        weights_ += count;
        return count;
    }

    /// Adds the decimal number `digits`. Leading zeros do not count; a very long number is a row of shorter ones.
    void addNumber(std::string_view digits)
    {
        if (digits.size() <= digitsInPlainValue && addValue(digits))
            return;
        while (!digits.empty()) {
            digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size() - 1));
            auto const segment = digits.substr(0, digitsInSegment);
            digits.remove_prefix(segment.size());
            if (segment.size() > digitsInPlainValue || !addValue(segment))
                addDigitPairs(segment);
        }
    }

    /// Adds the secondary weights, one for each primary weight, and returns the key's size.
    std::size_t finish()
    {
        *next_++ = levelSeparator;
        if (weights_ > 0) {
            std::size_t rest = weights_ - 1;
            for (; rest >= commonsInFullRow; rest -= commonsInFullRow)
                *next_++ = fullRowOfCommons;
            *next_++ = static_cast<unsigned char>(shortRowOfCommons + rest);
        }
        *next_++ = 0;
        return static_cast<std::size_t>(next_ - start_);
    }

private:
    void addByte(std::uint32_t byte) { *next_++ = static_cast<unsigned char>(byte); }

    /// Adds the `count` highest of `bytes`. All four are written, since that is one step; the room for a key allows it.
    void addBytes(std::uint32_t bytes, unsigned count)
    {
        if constexpr (std::endian::native == std::endian::little)
            bytes = __builtin_bswap32(bytes);
        std::memcpy(next_, &bytes, sizeof bytes);
        next_ += count;
        ++weights_;
    }

    /// False when the value is too great to be written as such.
    bool addValue(std::string_view digits)
    {
        std::uint32_t value = 0;
        for (char const digit : digits)
            value = value * 10 + static_cast<std::uint32_t>(digit - '0');

        std::uint32_t lead = firstBaseDigit;
        if (value < oneByteValues) {
            addBytes(numericLead_ << 24 | (lead + value) << 16, 2);
            return true;
        }
        value -= oneByteValues;
        lead += oneByteValues;
        if (value < twoByteLeads * base) {
            addBytes(numericLead_ << 24 | (lead + value / base) << 16 | (firstBaseDigit + value % base) << 8, 3);
            return true;
        }
        value -= twoByteLeads * base;
        lead += twoByteLeads;
        if (value >= threeByteLeads * base * base)
            return false;
        addBytes(numericLead_ << 24 | (lead + value / (base * base)) << 16 | (firstBaseDigit + value / base % base) << 8
                | (firstBaseDigit + value % base),
            4);
        return true;
    }

    /// The count of digit pairs, then each pair as an odd byte but the last, which is even: so a number that ends here
    /// comes before one that goes on. Pairs of zeros at the end are left out. A weight takes three bytes after its lead
    /// byte.
    void addDigitPairs(std::string_view digits)
    {
        auto const pairs = static_cast<std::uint32_t>((digits.size() + 1) / 2);
        while (digits.ends_with("00"))
            digits.remove_suffix(2);

        addByte(numericLead_);
        addByte(fewestPairsMark + pairs - fewestPairs);
        ++weights_;
        unsigned bytesInWeight = 2;
        for (std::size_t i = 0; i < digits.size();) {
            std::size_t const count = i == 0 && digits.size() % 2 == 1 ? 1 : 2;
            auto pair = static_cast<std::uint32_t>(digits[i] - '0');
            if (count == 2)
                pair = pair * 10 + static_cast<std::uint32_t>(digits[i + 1] - '0');
            i += count;
            if (bytesInWeight == 4) {
                addByte(numericLead_);
                ++weights_;
                bytesInWeight = 1;
            }
            addByte(2 * pair + (i < digits.size() ? 11U : 10U));
            ++bytesInWeight;
        }
    }

    unsigned char* start_;
    unsigned char* next_;
    std::uint32_t numericLead_;
    std::size_t weights_ = 0;
};

AsciiSortKeys::AsciiSortKeys(UCollator const* collator)
{
    if (!learnContractions(collator))
        return;
    for (unsigned char character = 1; character < characters; ++character) {
        auto& weight = weights_[character];
        bool const mayContract = weight.mayContract;
        weight = learnWeight(collator, character);
        weight.mayContract = mayContract;
    }
    gatherPlainBytes();
    isUsable_ = learnDigits(collator) && agreesOnSamples(collator);
    if (!isUsable_) {
        weights_ = {};
        plainBytes_ = {};
    }
}

void AsciiSortKeys::gatherPlainBytes()
{
    for (std::size_t character = 1; character < characters; ++character) {
        auto const& weight = weights_[character];
        if (weight.form != Form::plain || weight.mayContract)
            continue;
        auto& plain = plainBytes_[character];
        for (unsigned i = 0; i < weight.size; ++i)
            plain.bytes[i] = static_cast<unsigned char>(weight.primary >> (24 - 8 * i));
        plain.size = weight.size;
    }
}

/// Notes the contractions of ASCII characters. Only a locale's own rules have any. False when they cannot be told.
bool AsciiSortKeys::learnContractions(UCollator const* collator)
{
    UErrorCode error = U_ZERO_ERROR;
    std::unique_ptr<USet, decltype(&uset_close)> const tailored(ucol_getTailoredSet(collator, &error), uset_close);
    if (U_FAILURE(error) || !tailored)
        return false;
    for (std::int32_t i = 0, count = uset_getItemCount(tailored.get()); i < count; ++i) {
        UChar32 first = 0;
        UChar32 last = 0;
        char16_t text[64];
        UErrorCode itemError = U_ZERO_ERROR;
        // Ranges of single characters have no length; a text that does not fit still has its true one.
        auto const length = uset_getItem(tailored.get(), i, &first, &last, text, std::size(text), &itemError);
        if (length < 2)
            continue;
        auto const fitting = std::min<std::size_t>(static_cast<std::size_t>(length), std::size(text));
        if (!std::all_of(text, text + fitting, [](char16_t unit) { return unit < characters; }))
            continue;
        if (std::any_of(text, text + fitting, [](char16_t unit) { return unit >= u'0' && unit <= u'9'; }))
            return false;
        weights_[text[0]].mayContract = true;
        contractionStarts_.set(text[0] * characters + text[1]);
    }
    return true;
}

AsciiSortKeys::Weight AsciiSortKeys::learnWeight(UCollator const* collator, unsigned char character)
{
    char const c = static_cast<char>(character);
    if (isDigit(c))
        return { .form = Form::digit };
    auto const single = keyOf(collator, std::string(1, c));
    auto const doubled = keyOf(collator, std::string(2, c));
    auto const primary = single.substr(0, single.find(static_cast<char>(levelSeparator)));
    if (primary.empty()) {
        bool const hasNoWeight = single == keyWithCommons({}, 0) && doubled == single;
        return { .form = hasNoWeight ? Form::ignorable : Form::unknown };
    }
    if (primary.size() > 4 || single != keyWithCommons(primary, 1))
        return {};

    // Neighbours that share a lead byte may be written with one for all. That is seen at the doubled character, and is
    // never so for a weight of one byte (where the doubled character may also be a contraction).
    if (primary.size() > 1 && doubled != keyWithCommons(primary + primary, 2))
        return {};

    Weight weight { .size = static_cast<std::uint8_t>(primary.size()), .form = Form::plain };
    for (std::size_t i = 0; i < primary.size(); ++i)
        weight.primary |= static_cast<std::uint32_t>(static_cast<unsigned char>(primary[i])) << (24 - 8 * i);
    return weight;
}

bool AsciiSortKeys::learnDigits(UCollator const* collator)
{
    auto const zero = keyOf(collator, "0");
    if (zero.empty())
        return false;
    numericLead_ = static_cast<unsigned char>(zero[0]);
    return true;
}

/// Whether the format of the keys is the one that is written here: the library may be a later one with another format.
bool AsciiSortKeys::agreesOnSamples(UCollator const* collator) const
{
    std::string const samples[] = { "0", "73", "74", "00100", "10233", "10234", "1042489", "1042490", "9999999",
        "10000000", "123456789012345", "1000000000000000000000", std::string(255, '7'), std::string(600, '9'),
        "1.2-3 4", "-_-", "a-b_c", "x!", "(1)", "Report 2024-01-31 (final).txt", std::string(33, 'x'),
        std::string(34, 'x'), std::string(35, 'x'), std::string(100, 'x'), std::string(100, '.'), "\x01", "a\x01z",
        "!\"#$%&'()*+,-./:;<=>?@[\\]^_`{|}~", "the quick brown fox jumps over a lazy dog", "~a{b|c}d", "" };
    return std::all_of(std::begin(samples), std::end(samples), [&](std::string const& sample) {
        std::string key(greatestKeySize(sample.size()), '\0');
        key.resize(write(sample, reinterpret_cast<unsigned char*>(key.data())));
        return key.empty() || key == keyOf(collator, sample);
    });
}

bool AsciiSortKeys::isUnknownAt(std::string_view text, std::size_t position) const
{
    auto const byte = static_cast<unsigned char>(text[position]);
    if (byte >= characters || weights_[byte].form == Form::unknown)
        return true;
    if (!weights_[byte].mayContract || position + 1 == text.size())
        return false;
    auto const next = static_cast<unsigned char>(text[position + 1]);
    return next >= characters || contractionStarts_.test(byte * characters + next);
}

std::size_t AsciiSortKeys::write(std::string_view text, unsigned char* key) const
{
    KeyWriter writer(key, numericLead_);
    for (std::size_t i = 0; i < text.size(); ++i) {
        i += writer.addPlain(text.substr(i), plainBytes_);
        if (i == text.size())
            break;
        if (isUnknownAt(text, i))
            return 0;
        auto const& weight = weights_[static_cast<unsigned char>(text[i])];
        switch (weight.form) {
        case Form::unknown:
        case Form::ignorable:
            break;
        case Form::plain:
            writer.add(weight);
            break;
        case Form::digit: {
            auto end = i + 1;
            while (end < text.size() && isDigit(text[end]))
                ++end;
            writer.addNumber(text.substr(i, end - i));
            i = end - 1;
            break;
        }
        }
    }
    return writer.finish();
}

}
