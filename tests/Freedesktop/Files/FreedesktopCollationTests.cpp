#include "Freedesktop/Files/FreedesktopCollation.h"

#include "Fakes/FakeLog.h"
#include "Platform/CollationContract.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <numeric>
#include <random>
#include <thread>

namespace marrowick {
namespace {

std::vector<std::string> sorted(Collation const& collation, std::vector<std::string> texts)
{
    auto const prepared = collation.prepare({ texts.begin(), texts.end() });
    std::vector<std::size_t> positions(texts.size());
    std::iota(positions.begin(), positions.end(), 0U);
    std::stable_sort(
        positions.begin(), positions.end(), [&](std::size_t a, std::size_t b) { return prepared->compare(a, b) < 0; });
    std::vector<std::string> result;
    for (auto const position : positions)
        result.push_back(texts[position]);
    return result;
}

class FreedesktopCollationTest : public testing::Test {
protected:
    FakeLog log;
    FreedesktopCollation root { "", log };
};

TEST_F(FreedesktopCollationTest, KeepsThePromises)
{
    for (auto const* locale : { "", "de_DE", "sv_SE", "ja_JP", "cs_CZ", "fr_CA", "th_TH", "xx_YY" })
        contract::collationKeepsItsPromises(FreedesktopCollation(locale, log));
    EXPECT_EQ(log.lines(), std::vector<std::string>());
}

TEST_F(FreedesktopCollationTest, AsciiAndOtherTextsStandInOneOrder)
{
    EXPECT_EQ(sorted(root, { "zoo", "\xC3\xA9t\xC3\xA9", "f", "ete", "Etf", "\xC3\x89t\xC3\xA9" }),
        (std::vector<std::string> { "ete", "\xC3\xA9t\xC3\xA9", "\xC3\x89t\xC3\xA9", "Etf", "f", "zoo" }));
}

TEST_F(FreedesktopCollationTest, TheLocaleDecides)
{
    std::vector<std::string> const texts { "z", "\xC3\xA4", "a", "ch", "h", "d" };
    EXPECT_EQ(sorted(FreedesktopCollation("de_DE", log), texts),
        (std::vector<std::string> { "a", "\xC3\xA4", "ch", "d", "h", "z" }));
    EXPECT_EQ(sorted(FreedesktopCollation("sv_SE", log), texts),
        (std::vector<std::string> { "a", "ch", "d", "h", "z", "\xC3\xA4" }));
    EXPECT_EQ(sorted(FreedesktopCollation("cs_CZ", log), texts),
        (std::vector<std::string> { "a", "\xC3\xA4", "d", "h", "ch", "z" }));
}

TEST_F(FreedesktopCollationTest, PunctuationCounts)
{
    contract::expectOrder(root, "a-c", "ab");
    contract::expectOrder(root, "a b", "ab");
    EXPECT_FALSE(root.compare("a-b", "ab") == 0);
    // Thai rules would ignore punctuation by themselves.
    EXPECT_FALSE(FreedesktopCollation("th", log).compare("a-b", "ab") == 0);
}

TEST_F(FreedesktopCollationTest, CanonicallyEquivalentTextsAreEqual)
{
    contract::expectEqual(root, "caf\xC3\xA9", "cafe\xCC\x81");
    contract::expectEqual(root, "a\xCC\x87\xCC\xA3", "a\xCC\xA3\xCC\x87");
    contract::expectOrder(root, "cafe", "caf\xC3\xA9");
}

TEST_F(FreedesktopCollationTest, InvalidBytesCountAsReplacementCharacters)
{
    contract::expectEqual(root, "a\xFF", "a\xEF\xBF\xBD");
    contract::expectEqual(root, "a\xFF", "a\xFE");
    contract::expectEqual(root, "a\xE2\x82z", "a\xEF\xBF\xBDz");
    contract::expectEqual(root, "a\xFF\xFE", "a\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST_F(FreedesktopCollationTest, SingleComparisonsAndKeysAgreeOnRandomTexts)
{
    std::mt19937 random(7);
    static constexpr std::string_view bytes = "aAbz019 -._\xC3\xA9\xCC\x81\xE2\x82\xAC\xFF\x80\xED\xA0\xF0\x9F\x98";
    for (auto const* locale : { "", "da", "hu", "ja", "fr_CA", "sr_Latn" }) {
        FreedesktopCollation const collation(locale, log);
        std::vector<std::string> texts(250);
        for (auto& text : texts) {
            text.resize(random() % 9);
            std::generate(text.begin(), text.end(), [&] { return bytes[random() % bytes.size()]; });
        }
        auto const prepared = collation.prepare({ texts.begin(), texts.end() });
        for (std::size_t a = 0; a < texts.size(); ++a) {
            for (std::size_t b = 0; b < texts.size(); ++b)
                ASSERT_TRUE(prepared->compare(a, b) == collation.compare(texts[a], texts[b]))
                    << locale << ": " << testing::PrintToString(texts[a]) << testing::PrintToString(texts[b]);
        }
    }
}

TEST_F(FreedesktopCollationTest, KeysLongerThanExpectedAreWhole)
{
    // One character whose key is many bytes.
    std::string longText;
    for (int i = 0; i < 500; ++i)
        longText += "\xEF\xB7\xBA";
    auto const longer = longText + "b";
    auto const prepared = root.prepare({ longText, longer, longText });
    EXPECT_TRUE(prepared->compare(0, 1) < 0);
    EXPECT_TRUE(prepared->compare(0, 2) == 0);
}

TEST_F(FreedesktopCollationTest, ContainmentCountsAccentsAndWholeCharacters)
{
    EXPECT_TRUE(root.containsCaseInsensitively("CAF\xC3\x89 noir", "caf\xC3\xA9"));
    EXPECT_TRUE(root.containsCaseInsensitively("cafe\xCC\x81", "\xC3\x89"));
    EXPECT_TRUE(root.containsCaseInsensitively("caf\xC3\xA9", "E\xCC\x81"));
    EXPECT_FALSE(root.containsCaseInsensitively("caf\xC3\xA9", "e"));
    EXPECT_FALSE(root.containsCaseInsensitively("cafe\xCC\x81", "cafe"));
    EXPECT_FALSE(root.containsCaseInsensitively("cafe", "\xC3\xA9"));
    // x has no accented form of its own.
    EXPECT_FALSE(root.containsCaseInsensitively("ax\xCC\x82z", "x"));
    EXPECT_TRUE(root.containsCaseInsensitively("ax\xCC\x82xz", "xz"));
    EXPECT_FALSE(root.containsCaseInsensitively("x\xCC\x82z", "\xCC\x82z"));
    EXPECT_TRUE(root.containsCaseInsensitively("J\xCC\x8C", "\xC7\xB0"));
    // A Hangul syllable is not found in the syllable with one more letter.
    EXPECT_FALSE(root.containsCaseInsensitively("\xEA\xB0\x81", "\xEA\xB0\x80"));
    EXPECT_TRUE(root.containsCaseInsensitively("stra\xC3\x9F"
                                               "e",
        "STRASSE"));
    EXPECT_TRUE(root.containsCaseInsensitively("\xCE\x9F\xCE\x94\xCE\x9F\xCE\xA3", "\xCE\xBF\xCE\xB4\xCE\xBF\xCF\x82"));
}

TEST_F(FreedesktopCollationTest, ContainmentFollowsTheTurkishLettersInTurkishOnly)
{
    FreedesktopCollation const turkish("tr_TR", log);
    EXPECT_FALSE(turkish.containsCaseInsensitively("FIREFOX", "firefox"));
    EXPECT_TRUE(turkish.containsCaseInsensitively("F\xC4\xB0REFOX", "firefox"));
    EXPECT_TRUE(turkish.containsCaseInsensitively("FI\xCC\x87REFOX", "firefox"));
    EXPECT_TRUE(turkish.containsCaseInsensitively("f\xC4\xB1refox", "FIREFOX"));
    EXPECT_TRUE(root.containsCaseInsensitively("FIREFOX", "firefox"));
    EXPECT_FALSE(root.containsCaseInsensitively("f\xC4\xB1refox", "FIREFOX"));
}

TEST_F(FreedesktopCollationTest, ContainmentTakesInvalidBytesAsTheyAreShown)
{
    EXPECT_TRUE(root.containsCaseInsensitively("a\xFF"
                                               "b",
        "\xEF\xBF\xBD"
        "B"));
    EXPECT_FALSE(root.containsCaseInsensitively("ab", "\xFF"));
}

TEST_F(FreedesktopCollationTest, WorksFromSeveralThreadsAtOnce)
{
    auto const texts = contract::assortedTexts();
    FreedesktopCollation const collation("de_DE", log);
    FreedesktopCollation const reference("de_DE", log);
    auto const expected = sorted(reference, texts);
    std::array<std::vector<std::string>, 4> results;
    std::vector<std::thread> threads;
    for (auto& result : results)
        threads.emplace_back([&] { result = sorted(collation, texts); });
    for (auto& thread : threads)
        thread.join();
    for (auto const& result : results)
        EXPECT_EQ(result, expected);
}

UCollator* openNothing(char const*, UErrorCode* error)
{
    *error = U_MISSING_RESOURCE_ERROR;
    return nullptr;
}

UCollator* openRootOnly(char const* locale, UErrorCode* error)
{
    return *locale ? openNothing(locale, error) : ucol_open(locale, error);
}

TEST_F(FreedesktopCollationTest, ALocaleThatCannotBeOpenedHasTheRootsOrder)
{
    FreedesktopCollation const collation("sv_SE", log, openRootOnly);
    contract::collationKeepsItsPromises(collation);
    contract::expectOrder(collation, "\xC3\xA4", "z");
    EXPECT_EQ(log.lines(), std::vector<std::string>());
}

TEST_F(FreedesktopCollationTest, WithoutAnyCollatorTheBytesDecideAndTheLogSaysSo)
{
    FreedesktopCollation const collation("sv_SE", log, openNothing);
    EXPECT_EQ(sorted(collation, { "b", "a10", "a9", "B", "", "a\xFF" }),
        (std::vector<std::string> { "", "B", "a10", "a9", "a\xFF", "b" }));
    contract::preparedTextsCompareAsSingleOnes(collation);
    contract::containmentIgnoresCase(collation);
    EXPECT_EQ(log.lines().size(), 1U);
}

}
}
