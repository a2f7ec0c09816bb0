#pragma once

#include "Platform/Collation.h"

#include <gtest/gtest.h>
#include <memory>
#include <numeric>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace marrowick::contract {

inline void expectOrder(Collation const& collation, std::string_view a, std::string_view b)
{
    EXPECT_TRUE(collation.compare(a, b) < 0) << a << " before " << b;
    EXPECT_TRUE(collation.compare(b, a) > 0) << b << " after " << a;
}

inline void expectEqual(Collation const& collation, std::string_view a, std::string_view b)
{
    EXPECT_TRUE(collation.compare(a, b) == 0) << a << " and " << b;
    EXPECT_TRUE(collation.compare(b, a) == 0) << b << " and " << a;
}

inline void namesAreOrderedWithoutCaseAndNumbersByValue(Collation const& collation)
{
    expectOrder(collation, "", "a");
    expectOrder(collation, "apple", "Banana");
    expectOrder(collation, "Apple", "banana");
    expectEqual(collation, "README", "readme");
    expectEqual(collation, "", "");
    expectOrder(collation, "item 9", "item 10");
    expectOrder(collation, "item 99999999999999999998", "item 99999999999999999999");
    expectEqual(collation, "item 007", "ITEM 7");
    expectOrder(collation, "item 007", "item 8");
    expectOrder(collation, "01", "Apple");
    expectOrder(collation, "a", "aa");
}

/// Texts of every kind, invalid UTF-8 and repetitions among them.
inline std::vector<std::string> assortedTexts()
{
    return { "", "a", "A", "aa", "b", "item 9", "item 10", "Item 010", "01", "zz", "Apple", "apple.app", "-", "_", "~",
        " leading", "caf\xC3\xA9", "cafe\xCC\x81", "cafe", "CAF\xC3\x89", "caf\xE9", "\xFF", "\xFE\xFF", "\xC3",
        "\xE2\x82", "\xF0\x9F\x98\x80", "\xE6\x97\xA5\xE6\x9C\xAC", "a\nb", "a\tb", "a", std::string("a\0b", 3),
        std::string(3000, 'x'), std::string(3000, 'x') + "y", std::string(700, '7'), std::string(699, '7') };
}

/// Prepared texts, wherever they stand in whichever list, compare as single ones do, and outlive the texts.
inline void preparedTextsCompareAsSingleOnes(Collation const& collation)
{
    auto const texts = assortedTexts();
    std::unique_ptr<PreparedTexts> prepared;
    {
        auto const copies = texts;
        prepared = collation.prepare({ copies.begin(), copies.end() });
    }
    for (std::size_t a = 0; a < texts.size(); ++a) {
        for (std::size_t b = 0; b < texts.size(); ++b)
            EXPECT_TRUE(prepared->compare(a, b) == collation.compare(texts[a], texts[b]))
                << testing::PrintToString(texts[a]) << " and " << testing::PrintToString(texts[b]);
    }
    EXPECT_NE(collation.prepare(std::vector<std::string_view>()), nullptr);
}

/// Positions come into the order of their texts, those of equal texts into their own; also where other texts, more or
/// fewer, stood before.
inline void preparedTextsAreSorted(Collation const& collation)
{
    auto const prepared = collation.prepare();
    auto const all = assortedTexts();
    for (std::size_t const count : { all.size(), std::size_t { 3 }, std::size_t { 0 }, all.size() }) {
        std::vector<std::string> const texts(all.rbegin(), all.rbegin() + static_cast<std::ptrdiff_t>(count));
        prepared->assign({ texts.begin(), texts.end() });
        std::vector<std::size_t> positions(count);
        std::iota(positions.rbegin(), positions.rend(), std::size_t { 0 });
        prepared->sort(positions);
        for (std::size_t place = 1; place < count; ++place) {
            auto const before = positions[place - 1];
            auto const after = positions[place];
            auto const order = collation.compare(texts[before], texts[after]);
            EXPECT_TRUE(order < 0 || (order == 0 && before < after)) << place << " of " << count;
        }
        EXPECT_EQ(std::set(positions.begin(), positions.end()).size(), count);
    }
}

/// Every text equals itself, an order turned round is the opposite order, and two steps in one direction are one.
inline void theOrderIsAWeakOrder(Collation const& collation)
{
    auto const texts = assortedTexts();
    for (auto const& a : texts) {
        EXPECT_TRUE(collation.compare(a, a) == 0);
        for (auto const& b : texts) {
            EXPECT_TRUE((collation.compare(a, b) < 0) == (collation.compare(b, a) > 0));
            for (auto const& c : texts) {
                bool const isRow = collation.compare(a, b) <= 0 && collation.compare(b, c) <= 0;
                EXPECT_TRUE(!isRow || collation.compare(a, c) <= 0)
                    << testing::PrintToString(std::vector { a.substr(0, 20), b.substr(0, 20), c.substr(0, 20) });
            }
        }
    }
}

inline void containmentIgnoresCase(Collation const& collation)
{
    EXPECT_TRUE(collation.containsCaseInsensitively("org.mozilla.Firefox", "firefox"));
    EXPECT_TRUE(collation.containsCaseInsensitively("org.mozilla.firefox", "MOZILLA"));
    EXPECT_TRUE(collation.containsCaseInsensitively("abc", "abc"));
    EXPECT_FALSE(collation.containsCaseInsensitively("abc", "abcd"));
    EXPECT_FALSE(collation.containsCaseInsensitively("abc", "ac"));
    EXPECT_FALSE(collation.containsCaseInsensitively("", "a"));
    EXPECT_FALSE(collation.containsCaseInsensitively("abc", ""));
    EXPECT_FALSE(collation.containsCaseInsensitively("", ""));
    // The number rule of the order has no part in it.
    EXPECT_FALSE(collation.containsCaseInsensitively("item 007", "m 7"));
}

/// What every collation does for its callers.
inline void collationKeepsItsPromises(Collation const& collation)
{
    namesAreOrderedWithoutCaseAndNumbersByValue(collation);
    preparedTextsCompareAsSingleOnes(collation);
    preparedTextsAreSorted(collation);
    theOrderIsAWeakOrder(collation);
    containmentIgnoresCase(collation);
}

}
