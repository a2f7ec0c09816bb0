#include "Support/ExchangeCoding.h"

#include <chrono>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

using namespace std::string_literals;

/// 16 November 2026, 00:44:41 UTC.
FileTime const generated { std::chrono::seconds(1'794'789'881) };
std::string const head = R"({"generated":"2026-11-16T00:44:41Z","roots":)";

std::optional<std::string> encoded(SnapshotNodes roots)
{
    return encode(Snapshot { generated, std::move(roots) });
}

/// The bytes between the quotes of a name.
std::string encodedText(std::string const& text)
{
    auto const bytes = encoded({ { text, "", {} } });
    auto const before = head + R"([{"name":")";
    auto const after = R"(","path":"","children":[]}]})"s;
    if (!bytes || !bytes->starts_with(before) || !bytes->ends_with(after))
        return "not encoded as expected: " + bytes.value_or("absent");
    return bytes->substr(before.size(), bytes->size() - before.size() - after.size());
}

TEST(ExchangeEncodingTest, ASnapshotWithoutRootsHasAnEmptyArray)
{
    EXPECT_EQ(encoded({}), head + "[]}");
}

TEST(ExchangeEncodingTest, ALeafHasAnEmptyArrayOfChildren)
{
    EXPECT_EQ(encoded({ { "A", "/A", {} } }), head + R"([{"name":"A","path":"\/A","children":[]}]})");
}

TEST(ExchangeEncodingTest, KeysStandInTheOrderOfTheRecordWithoutSpaces)
{
    EXPECT_EQ(encoded({ { "A", "/x/A", { { "b", "/x/A/b", { { "c", "/x/A/b/c", {} } } }, { "d", "/x/A/d", {} } } },
                  { "B", "/B", {} } }),
        head
            + R"([{"name":"A","path":"\/x\/A","children":[)"
              R"({"name":"b","path":"\/x\/A\/b","children":[{"name":"c","path":"\/x\/A\/b\/c","children":[]}]},)"
              R"({"name":"d","path":"\/x\/A\/d","children":[]}]},)"
              R"({"name":"B","path":"\/B","children":[]}]})");
}

TEST(ExchangeEncodingTest, TextsAreEscapedWhereTheFormatWantsIt)
{
    struct Row {
        std::string text;
        std::string bytes;
    };
    std::vector<Row> const rows {
        { "", "" },
        { "/", R"(\/)" },
        { "//a/", R"(\/\/a\/)" },
        { "\\/", R"(\\\/)" },
        { R"(say "no")", R"(say \"no\")" },
        { "\b\f\n\r\t", R"(\b\f\n\r\t)" },
        { "\0"s, R"(\u0000)" },
        { "\x01\x1f", R"(\u0001\u001f)" },
        { "\x7f", "\x7f" },
        { "é日本𝄞\u2028", "é日本𝄞\u2028" },
        { "e\u0301", "e\u0301" },
        { "<&'>", "<&'>" },
    };
    for (auto const& row : rows)
        EXPECT_EQ(encodedText(row.text), row.bytes);
}

TEST(ExchangeEncodingTest, LongTextsAreWhole)
{
    // As far as beyond any buffer on the way, and with an escape at every place of one.
    for (std::size_t size = 1000; size < 1040; ++size)
        EXPECT_EQ(encodedText(std::string(size, 'x') + "/\n"), std::string(size, 'x') + R"(\/\n)") << size;
    std::string slashes;
    for (int count = 0; count < 5000; ++count)
        slashes += R"(\/)";
    EXPECT_EQ(encodedText(std::string(5000, '/')), slashes);
}

TEST(ExchangeEncodingTest, ATextThatIsNotUTF8CannotBeWritten)
{
    for (std::string const text : { "\xff", "a\xc3", "\xed\xa0\x80", "\xc0\xaf", "\xf4\x90\x80\x80" }) {
        EXPECT_EQ(encoded({ { text, "/", {} } }), std::nullopt) << testing::PrintToString(text);
        EXPECT_EQ(encoded({ { "", "/" + text, {} } }), std::nullopt) << testing::PrintToString(text);
        EXPECT_EQ(encoded({ { "", "/", { { text, "/", {} } } } }), std::nullopt) << testing::PrintToString(text);
    }
}

TEST(ExchangeEncodingTest, ARequestHasItsKeysInTheOrderOfTheRecord)
{
    EXPECT_EQ(encode(MoveRequest { "move", "/x/Dest", { "/b", "/a \"1\"" } }),
        R"({"op":"move","dest":"\/x\/Dest","sources":["\/b","\/a \"1\""]})");
    EXPECT_EQ(encode(MoveRequest { "ask", "/", {} }), R"({"op":"ask","dest":"\/","sources":[]})");
}

TEST(ExchangeEncodingTest, ARequestThatIsNotUTF8CannotBeWritten)
{
    EXPECT_EQ(encode(MoveRequest { "\xff", "/", {} }), std::nullopt);
    EXPECT_EQ(encode(MoveRequest { "move", "/\xc3", {} }), std::nullopt);
    EXPECT_EQ(encode(MoveRequest { "move", "/", { "/a", "/\xff" } }), std::nullopt);
}

TEST(ExchangeEncodingTest, ARequestThatWasWrittenIsReadAsTheSame)
{
    MoveRequest const requests[] {
        { "ask", "/x", {} },
        { "alias", "/ \"\\\n\x01é", { "", "/", "/a%20_#?\t", "/\u2028𝄞" } },
        { "copy", "/x", std::vector<std::string>(1000, "/" + std::string(300, 'n')) },
    };
    for (auto const& request : requests) {
        auto const bytes = encode(request);
        ASSERT_TRUE(bytes);
        EXPECT_EQ(decodeMoveRequest(*bytes), request);
    }
}

TEST(ExchangeEncodingTest, WhatWasWrittenIsReadAsTheSame)
{
    Snapshot const snapshot { generated,
        { { "A \"\\/\n\x01", "/x/é", { { "b", "/x/é/b", { { "c", "/x/é/b/c", { { "d", "/d", {} } } } } } } },
            { "", "", {} } } };
    auto const bytes = encode(snapshot);
    ASSERT_TRUE(bytes);
    EXPECT_EQ(decodeSnapshot(*bytes), snapshot);
}

}
}
