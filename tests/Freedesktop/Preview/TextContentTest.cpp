#include "Freedesktop/Preview/TextContent.h"

#include <gtest/gtest.h>

#include <string>

namespace marrowick {
namespace {

struct Row {
    char const* what;
    QByteArray bytes;
    TextEnd end;
    std::u16string shown;
};

QByteArray bytes(char const* text, qsizetype size)
{
    return { text, size };
}

TEST(TextContentTest, BytesAreReadInTheEncodingThatTheyHave)
{
    Row const rows[] = {
        { "UTF-8", "K\xC3\xA4se \xE2\x82\xAC", TextEnd::whole, u"K\u00E4se \u20AC" },
        { "UTF-8 with a mark", "\xEF\xBB\xBFK\xC3\xA4se", TextEnd::whole, u"K\u00E4se" },
        { "UTF-16, little end first", bytes("\xFF\xFEK\0\xE4\0", 6), TextEnd::whole, u"K\u00E4" },
        { "UTF-16, big end first", bytes("\xFE\xFF\0K\0\xE4", 6), TextEnd::whole, u"K\u00E4" },
        { "Latin-1", "K\xE4se", TextEnd::whole, u"K\u00E4se" },
        { "UTF-8 cut off after two of three bytes", "ab\xE2\x82", TextEnd::cutOff, u"ab" },
        { "UTF-8 cut off after three of four bytes", "ab\xF0\x9F\x98", TextEnd::cutOff, u"ab" },
        { "UTF-8 cut off between characters", "a\xC3\xA4", TextEnd::cutOff, u"a\u00E4" },
        { "half a character at the end of the whole", "abcdefghijklmnop\xC3", TextEnd::whole,
            u"abcdefghijklmnop\u00C3" },
        { "nothing", "", TextEnd::whole, u"" },
    };
    for (auto const& [what, content, end, shown] : rows)
        EXPECT_EQ(textFrom(content, end).value_or(u"(none)"_qs).toStdU16String(), shown) << what;
}

TEST(TextContentTest, ControlCharactersBecomeVisibleMarks)
{
    Row const rows[] = {
        { "line ends", "a\r\nb\rc\nd", TextEnd::whole, u"a\nb\nc\nd" },
        { "a tab", "a\tb", TextEnd::whole, u"a\tb" },
        { "a zero", bytes("0123456789\0", 11), TextEnd::whole, u"0123456789\u2400" },
        { "escape and form feed", "a\x1B[31m\f", TextEnd::whole, u"a\u241B[31m\u240C" },
        { "delete", "0123456789\x7F", TextEnd::whole, u"0123456789\u2421" },
        { "a turn of the direction",
            "a\xE2\x80\xAE"
            "b\xE2\x81\xA6",
            TextEnd::whole, u"a\uFFFDb\uFFFD" },
        { "a paragraph separator",
            "a\xE2\x80\xA9"
            "b",
            TextEnd::whole, u"a\u2424b" },
    };
    for (auto const& [what, content, end, shown] : rows)
        EXPECT_EQ(textFrom(content, end).value_or(u"(none)"_qs).toStdU16String(), shown) << what;
}

TEST(TextContentTest, BytesThatAreMostlyControlCharactersAreNoText)
{
    EXPECT_FALSE(textFrom(QByteArray(1000, '\0'), TextEnd::whole));
    EXPECT_FALSE(textFrom(bytes("ab\0\1\2\3", 6), TextEnd::whole));
    EXPECT_TRUE(textFrom(QByteArray(100, 'a') + QByteArray(5, '\0'), TextEnd::whole));
}

TEST(TextContentTest, LongLinesAreBroken)
{
    EXPECT_EQ(withShortLines(u"abcdef\nab\nabcd"_qs, 4), u"abcd\nef\nab\nabcd"_qs);
    EXPECT_EQ(withShortLines(u"abc\U0001F600d"_qs, 4), u"abc\U0001F600\nd"_qs);
}

}
}
