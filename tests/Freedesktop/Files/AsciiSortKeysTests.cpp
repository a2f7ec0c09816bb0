#include "Freedesktop/Files/AsciiSortKeys.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <unicode/uset.h>
#include <vector>

namespace marrowick {
namespace {

using Collator = std::unique_ptr<UCollator, decltype(&ucol_close)>;

Collator collatorFor(char const* locale)
{
    UErrorCode error = U_ZERO_ERROR;
    Collator collator(ucol_open(locale, &error), ucol_close);
    ucol_setStrength(collator.get(), UCOL_SECONDARY);
    ucol_setAttribute(collator.get(), UCOL_NUMERIC_COLLATION, UCOL_ON, &error);
    ucol_setAttribute(collator.get(), UCOL_NORMALIZATION_MODE, UCOL_ON, &error);
    ucol_setAttribute(collator.get(), UCOL_ALTERNATE_HANDLING, UCOL_NON_IGNORABLE, &error);
    ucol_setAttribute(collator.get(), UCOL_CASE_LEVEL, UCOL_OFF, &error);
    EXPECT_TRUE(U_SUCCESS(error)) << locale;
    return collator;
}

std::vector<std::string> allLocales()
{
    std::vector<std::string> locales { "" };
    for (int i = 0; i < ucol_countAvailable(); ++i)
        locales.emplace_back(ucol_getAvailable(i));
    return locales;
}

std::string libraryKey(UCollator const* collator, std::string_view ascii)
{
    std::u16string const text(ascii.begin(), ascii.end());
    std::string key(10 * ascii.size() + 64, '\0');
    auto const size = ucol_getSortKey(collator, text.data(), static_cast<int>(text.size()),
        reinterpret_cast<std::uint8_t*>(key.data()), static_cast<int>(key.size()));
    EXPECT_LE(size, static_cast<int>(key.size()));
    key.resize(static_cast<std::size_t>(size));
    return key;
}

/// The key that is written here, empty when it is left to the library; a write past the promised room fails.
std::string ownKey(AsciiSortKeys const& keys, std::string_view text)
{
    constexpr std::string_view guard = "guard";
    auto const room = AsciiSortKeys::greatestKeySize(text.size());
    std::string key(room, '\0');
    key += guard;
    auto const size = keys.write(text, reinterpret_cast<unsigned char*>(key.data()));
    EXPECT_LE(size, room);
    EXPECT_EQ(std::string_view(key).substr(room), guard);
    key.resize(size);
    return key;
}

std::string readable(std::string_view text)
{
    std::string shown;
    for (char const c : text)
        shown += c >= 0x20 && c < 0x7F ? std::string(1, c) : "<" + std::to_string(c & 0xFF) + ">";
    return shown;
}

/// Random texts of several manners, the same in every run.
class TextSource {
public:
    std::string next()
    {
        switch (below(7)) {
        case 0:
            return text(12, [&] { return static_cast<char>(1 + below(127)); });
        case 1:
            return text(30, [&] { return static_cast<char>(' ' + below(95)); });
        case 2:
            return text(8, [&] { return punctuation[below(punctuation.size())]; });
        case 3:
            return text(20, [&] { return below(2) ? digit() : punctuation[below(punctuation.size())]; });
        case 4:
            return text(4, [&] { return letter(); }) + number() + text(3, [&] { return letter(); }) + number();
        case 5:
            return text(90, [&] { return letter(); });
        default:
            return text(10, [&] { return letters[below(letters.size())]; });
        }
    }

private:
    static constexpr std::string_view punctuation = "_-,;:!?.'\"()[]{}@*/\\&#%`^+<=>|~$ \t\n\x01\x7F";
    /// Those that contractions of many locales are made of.
    static constexpr std::string_view letters = "aaccddeeghjjkllnnrsstyzz'CHLJNYSZADGK";

    std::size_t below(std::size_t limit) { return random_() % limit; }
    char digit() { return static_cast<char>('0' + below(10)); }
    char letter() { return static_cast<char>((below(2) ? 'a' : 'A') + below(26)); }

    template<typename Next>
    std::string text(std::size_t longest, Next const& next)
    {
        std::string made(below(longest + 1), '\0');
        std::generate(made.begin(), made.end(), next);
        return made;
    }

    std::string number()
    {
        static constexpr std::size_t lengths[] = { 1, 2, 3, 5, 6, 7, 7, 8, 9, 14, 17, 40, 253, 254, 255, 256, 600 };
        auto digits = std::string(below(4) == 0 ? below(300) : 0, '0');
        auto const length = lengths[below(std::size(lengths))];
        bool const isRound = below(3) == 0;
        for (std::size_t i = 0; i < length; ++i)
            digits += isRound && i > length / 2 ? '0' : digit();
        return digits;
    }

    std::mt19937 random_ { 20240229 };
};

std::vector<std::string> adversarialTexts()
{
    std::vector<std::string> texts;
    for (unsigned value : { 0U, 1U, 72U, 73U, 74U, 75U, 254U, 10232U, 10233U, 10234U, 10235U, 1042488U, 1042489U,
             1042490U, 1042491U, 9999999U, 10000000U, 99999999U, 100000000U }) {
        texts.push_back(std::to_string(value));
        texts.push_back("000" + std::to_string(value));
        texts.push_back("x" + std::to_string(value) + ".y");
        texts.push_back("-" + std::to_string(value) + "-");
    }
    for (std::size_t length = 1; length < 80; ++length) {
        texts.emplace_back(length, '0');
        texts.emplace_back(length, '9');
        texts.push_back("1" + std::string(length, '0'));
        texts.emplace_back(length, 'q');
        texts.emplace_back(length, '-');
    }
    for (std::size_t length : { 250U, 253U, 254U, 255U, 256U, 507U, 508U, 509U, 1000U }) {
        texts.emplace_back(length, '8');
        texts.push_back(std::string(length, '8') + "0");
        texts.push_back(std::string(length, '8') + "00000001");
        texts.push_back(std::string(length, '8') + std::string(length, '0'));
        texts.push_back(std::string(length, '0') + std::string(length, '5'));
        texts.push_back("1" + std::string(length, '0') + "1");
        texts.emplace_back(length, 'w');
    }
    return texts;
}

std::vector<std::string> allPairs()
{
    std::vector<std::string> pairs;
    for (int first = 1; first < 128; ++first) {
        for (int second = 1; second < 128; ++second)
            pairs.push_back({ static_cast<char>(first), static_cast<char>(second) });
    }
    return pairs;
}

class AsciiSortKeysTest : public testing::TestWithParam<std::string> { };

TEST_P(AsciiSortKeysTest, AreTheLibrarysKeysByteForByte)
{
    auto const collator = collatorFor(GetParam().c_str());
    AsciiSortKeys const keys(collator.get());
    EXPECT_TRUE(keys.isUsable());

    auto texts = adversarialTexts();
    for (auto& pair : allPairs())
        texts.push_back(std::move(pair));
    TextSource source;
    for (int i = 0; i < 4000; ++i)
        texts.push_back(source.next());

    std::size_t known = 0;
    for (auto const& text : texts) {
        auto const own = ownKey(keys, text);
        if (own.empty())
            continue;
        ++known;
        ASSERT_EQ(own, libraryKey(collator.get(), text)) << GetParam() << ": " << readable(text);
    }
    EXPECT_GT(known, texts.size() / 2) << GetParam();
}

// The constructor looks at the locale's own rules only, which is quicker than all rules and only as good as this.
TEST_P(AsciiSortKeysTest, NoContractionOfAsciiCharactersIsMissed)
{
    auto const collator = collatorFor(GetParam().c_str());
    AsciiSortKeys const keys(collator.get());
    UErrorCode error = U_ZERO_ERROR;
    std::unique_ptr<USet, decltype(&uset_close)> const contractions(uset_openEmpty(), uset_close);
    ucol_getContractionsAndExpansions(collator.get(), contractions.get(), nullptr, true, &error);
    ASSERT_TRUE(U_SUCCESS(error));
    for (int i = 0; i < uset_getItemCount(contractions.get()); ++i) {
        UChar32 first = 0;
        UChar32 last = 0;
        std::array<char16_t, 64> units {};
        error = U_ZERO_ERROR;
        auto const length
            = uset_getItem(contractions.get(), i, &first, &last, units.data(), static_cast<int>(units.size()), &error);
        ASSERT_LE(length, static_cast<int>(units.size()));
        bool const isAscii
            = std::all_of(units.begin(), units.begin() + length, [](char16_t unit) { return unit < 128; });
        if (length < 2 || !isAscii)
            continue;
        std::string text;
        std::transform(units.begin(), units.begin() + length, std::back_inserter(text),
            [](char16_t unit) { return static_cast<char>(unit); });
        EXPECT_EQ(ownKey(keys, text), "") << GetParam() << ": " << text;
    }
}

INSTANTIATE_TEST_SUITE_P(AllLocales, AsciiSortKeysTest, testing::ValuesIn(allLocales()),
    [](auto const& locale) { return locale.param.empty() ? std::string("root") : locale.param; });

TEST(AsciiSortKeys, KnowEveryPlainAsciiTextOfTheRootLocale)
{
    AsciiSortKeys const keys(collatorFor("").get());
    TextSource source;
    for (int i = 0; i < 4000; ++i) {
        auto const text = source.next();
        EXPECT_NE(ownKey(keys, text), "") << readable(text);
    }
}

TEST(AsciiSortKeys, LeaveContractionsToTheLibrary)
{
    AsciiSortKeys const keys(collatorFor("cs").get());
    EXPECT_EQ(ownKey(keys, "chata"), "");
    EXPECT_EQ(ownKey(keys, "ARCHIV"), "");
    EXPECT_NE(ownKey(keys, "c-h"), "");
    AsciiSortKeys const danish(collatorFor("da").get());
    EXPECT_EQ(ownKey(danish, "Aalborg"), "");
    EXPECT_NE(ownKey(danish, "Anna"), "");
    EXPECT_NE(ownKey(keys, "hc"), "");
}

TEST(AsciiSortKeys, LeaveTextsOfOtherCharactersToTheLibrary)
{
    AsciiSortKeys const keys(collatorFor("").get());
    for (auto const* text : { "\xC3\xA9", "a\xC3\xA9", "caf\xE9", "1\xFF", "\x80" })
        EXPECT_EQ(ownKey(keys, text), "") << readable(text);
    EXPECT_EQ(ownKey(keys, std::string_view("a\0b", 3)), "");
}

TEST(AsciiSortKeys, ACollatorOfAnotherSettingIsNotImitated)
{
    auto const collator = collatorFor("");
    UErrorCode error = U_ZERO_ERROR;
    ucol_setAttribute(collator.get(), UCOL_NUMERIC_COLLATION, UCOL_OFF, &error);
    EXPECT_FALSE(AsciiSortKeys(collator.get()).isUsable());

    auto const withCase = collatorFor("");
    ucol_setStrength(withCase.get(), UCOL_TERTIARY);
    AsciiSortKeys const keys(withCase.get());
    EXPECT_EQ(ownKey(keys, "a"), "");
}

}
}
