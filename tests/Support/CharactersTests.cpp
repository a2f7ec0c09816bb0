#include "Support/Characters.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

std::vector<std::size_t> lengths(std::string_view text)
{
    std::vector<std::size_t> result;
    while (!text.empty()) {
        result.push_back(firstCharacterLength(text));
        text.remove_prefix(result.back());
    }
    return result;
}

struct Row {
    std::string_view text;
    std::vector<std::size_t> lengths;
};

TEST(CharactersTest, ACodePointOrABrokenByteIsOneCharacter)
{
    using namespace std::string_view_literals;
    std::vector<Row> const rows {
        { "abc", { 1, 1, 1 } },
        { "\0a"sv, { 1, 1 } },
        { "é日😀", { 2, 3, 4 } },
        // The first and last code points of each length.
        { "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", { 1, 2, 2, 3, 3, 4, 4 } },
        { "\xED\x9F\xBF\xEE\x80\x80", { 3, 3 } },
        // A combining mark is a character of its own.
        { "e\xCC\x81", { 1, 2 } },
        // Bytes that begin nothing.
        { "\x80\xBF\xFF\xFE", { 1, 1, 1, 1 } },
        // Overlong forms, surrogates and what lies above the last code point.
        { "\xC0\xAF", { 1, 1 } },
        { "\xC1\xBF", { 1, 1 } },
        { "\xE0\x9F\xBF", { 1, 1, 1 } },
        { "\xED\xA0\x80", { 1, 1, 1 } },
        { "\xF0\x8F\xBF\xBF", { 1, 1, 1, 1 } },
        { "\xF4\x90\x80\x80", { 1, 1, 1, 1 } },
        { "\xF5\x80\x80\x80", { 1, 1, 1, 1 } },
        // Sequences that break off.
        { "\xC3", { 1 } },
        { "\xE6\x97", { 1, 1 } },
        { "\xF0\x9F\x98", { 1, 1, 1 } },
        { "\xC3(", { 1, 1 } },
        { "\xE6\x97x", { 1, 1, 1 } },
        { "\xF0\x9F\x98\xC3\xA9", { 1, 1, 1, 2 } },
    };
    for (auto const& row : rows)
        EXPECT_EQ(lengths(row.text), row.lengths) << testing::PrintToString(row.text);
}

TEST(CharactersTest, ABrokenByteIsFoundWhereverItStands)
{
    for (std::size_t length = 1; length <= 40; ++length) {
        EXPECT_TRUE(isValidUTF8(std::string(length, 'x')));
        for (std::size_t position = 0; position < length; ++position) {
            std::string text(length, 'x');
            text[position] = '\xFF';
            EXPECT_FALSE(isValidUTF8(text)) << position << " of " << length;
            EXPECT_TRUE(isValidUTF8(text.replace(position, 1, "\u00E9"))) << position << " of " << length;
        }
    }
}

}
}
