#include "Support/ExchangeCoding.h"

#include <chrono>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

using namespace std::string_literals;

MoveRequest const moveA { "move", "/d", { "/a" } };
std::string const moveAText = R"({"op":"move","dest":"/d","sources":["/a"]})";

/// A request whose record is `moveA`, with a member more.
std::string withMember(std::string const& member)
{
    return R"({"op":"move","dest":"/d",)" + member + R"(,"sources":["/a"]})";
}

/// A request with the given JSON as its only source.
std::string withSource(std::string const& source)
{
    return R"({"op":"move","dest":"/d","sources":[)" + source + "]}";
}

std::string withRoots(std::string const& roots)
{
    return R"({"generated":"2026-11-16T00:44:41Z","roots":)" + roots + "}";
}

TEST(RequestDecodingTest, ARequestHasItsThreeMembersInAnyOrder)
{
    EXPECT_EQ(decodeMoveRequest(moveAText), moveA);
    EXPECT_EQ(decodeMoveRequest(R"( { "sources" : [ "/a" ] , "dest" : "/d" , "op" : "move" } )"
                                "\r\n\t"),
        moveA);
    EXPECT_EQ(decodeMoveRequest(R"({"op":"","dest":"","sources":[]})"), (MoveRequest { "", "", {} }));
    EXPECT_EQ(decodeMoveRequest(R"({"op":"ask","dest":"/d","sources":["/b","/a","/b"]})"),
        (MoveRequest { "ask", "/d", { "/b", "/a", "/b" } }));
}

TEST(RequestDecodingTest, BothFormsOfASlashAndAllEscapesAreRead)
{
    EXPECT_EQ(decodeMoveRequest(R"({"op":"move","dest":"\/d","sources":["\/a"]})"), moveA);
    EXPECT_EQ(decodeMoveRequest(R"({"\u006fp":"mov\u0065","dest":"\u002fd","sources":["/a"]})"), moveA);
    EXPECT_EQ(decodeMoveRequest(withSource(R"("\"\\\b\f\n\r\t\u0000\u00e9\ud834\udd1e")"))->sources,
        (std::vector { "\"\\\b\f\n\r\t\0é𝄞"s }));
}

TEST(RequestDecodingTest, OtherMembersAreIgnoredWhateverTheyHold)
{
    for (std::string const member : { R"("version":1)", R"("version":null)", R"("x":"y")",
             R"("x":[1,[2,{"a":[]}],"z"])", R"("x":{"op":"copy","dest":"/e","sources":["/b"]})",
             R"("x":[{"op":"copy"}])", R"("":"")", R"("Op":1)", R"("op ":1)", R"("x":-1.5e3)",
             R"("x":12345678901234567890123)", R"("x":true)", R"("generated":1)", R"("children":[{"name":1}])" })
        EXPECT_EQ(decodeMoveRequest(withMember(member)), moveA) << member;
}

TEST(RequestDecodingTest, AMemberThatIsMissingMakesItNoRequest)
{
    for (std::string const text :
        { R"({})", R"({"op":"move","dest":"/d"})", R"({"op":"move","sources":[]})", R"({"dest":"/d","sources":[]})",
            R"({"OP":"move","dest":"/d","sources":[]})", R"({"x":{"op":"move"},"dest":"/d","sources":[]})" })
        EXPECT_EQ(decodeMoveRequest(text), std::nullopt) << text;
}

TEST(RequestDecodingTest, AMemberOfAnotherTypeMakesItNoRequest)
{
    for (std::string const value : { "null", "1", "1.5", "true", "{}", "[]", R"(["move"])" }) {
        EXPECT_EQ(decodeMoveRequest(R"({"op":)" + value + R"(,"dest":"/d","sources":[]})"), std::nullopt) << value;
        EXPECT_EQ(decodeMoveRequest(R"({"op":"move","dest":)" + value + R"(,"sources":[]})"), std::nullopt) << value;
        EXPECT_EQ(decodeMoveRequest(withSource(R"("/a",)" + value)), std::nullopt) << value;
        EXPECT_EQ(decodeMoveRequest(withSource(value + R"(,"/a")")), std::nullopt) << value;
    }
    for (std::string const value : { "null", "1", "-1.5", "false", "{}", R"("/a")", R"({"0":"/a"})" })
        EXPECT_EQ(decodeMoveRequest(R"({"op":"move","dest":"/d","sources":)" + value + "}"), std::nullopt) << value;
}

TEST(RequestDecodingTest, ADocumentThatIsNoObjectIsNoRequest)
{
    for (std::string const text : { "", " ", "null", "true", "1", R"("move")", "[]", R"(["op","dest"])" })
        EXPECT_EQ(decodeMoveRequest(text), std::nullopt) << text;
    EXPECT_EQ(decodeMoveRequest("[" + moveAText + "]"), std::nullopt);
}

TEST(RequestDecodingTest, OfAMemberThatStandsThereSeveralTimesTheLastCounts)
{
    struct Row {
        std::string text;
        std::optional<MoveRequest> request;
    };
    std::vector<Row> const rows {
        { R"({"op":"copy","op":"move","dest":"/d","sources":["/a"]})", moveA },
        { R"({"op":1,"op":"move","dest":"/e","sources":["/a"],"dest":"/d"})", moveA },
        { R"({"op":"move","dest":"/d","sources":["/b","/c"],"sources":["/a"]})", moveA },
        { R"({"op":"move","dest":"/d","sources":["/b",1],"sources":["/a"]})", moveA },
        { R"({"op":"move","dest":"/d","sources":{},"sources":["/a"]})", moveA },
        { R"({"op":"move","dest":"/d","sources":["/a"],"op":1})", std::nullopt },
        { R"({"op":"move","dest":"/d","sources":["/a"],"dest":[]})", std::nullopt },
        { R"({"op":"move","dest":"/d","sources":["/a"],"sources":null})", std::nullopt },
        { R"({"op":"move","dest":"/d","sources":["/a"],"sources":["/a",{}]})", std::nullopt },
    };
    for (auto const& row : rows)
        EXPECT_EQ(decodeMoveRequest(row.text), row.request) << row.text;
}

TEST(RequestDecodingTest, WhatIsNotExactlyJSONIsNoRequest)
{
    std::vector<std::string> const texts {
        moveAText.substr(0, moveAText.size() - 1),
        moveAText + "}",
        moveAText + moveAText,
        moveAText + "\0"s,
        "\xEF\xBB\xBF" + moveAText,
        "\0"s + moveAText,
        R"({"op":"move","dest":"/d","sources":["/a"],})",
        R"({"op":"move","dest":"/d","sources":["/a",]})",
        R"({'op':'move','dest':'/d','sources':['/a']})",
        R"({op:"move","dest":"/d","sources":["/a"]})",
        "/**/" + moveAText,
        moveAText + "// end",
        withMember(R"("x":01)"),
        withMember(R"("x":.5)"),
        withMember(R"("x":1.)"),
        withMember(R"("x":+1)"),
        withMember(R"("x":NaN)"),
        withMember(R"("x":Infinity)"),
        withMember(R"("x":True)"),
        withMember(R"("x":undefined)"),
        withMember("\"x\":\"line\nfeed\""),
        withMember("\"x\":\"\t\""),
        withMember("\"x\":\"\0\""s),
        withMember(R"("x":"\a")"),
        withMember(R"("x":"\x41")"),
        withMember(R"("x":"\u12g4")"),
        withMember(R"("x":"\u12")"),
        withMember("\"x\":\v1"),
        withMember("\"x\":\u00a01"),
    };
    for (auto const& text : texts)
        EXPECT_EQ(decodeMoveRequest(text), std::nullopt) << text;
}

TEST(RequestDecodingTest, TextThatIsNotUTF8MakesItNoRequest)
{
    for (std::string const text : { "\xff", "\x80", "\xc3", "\xc0\xaf", "\xe0\x80\xaf", "\xed\xa0\x80",
             "\xf4\x90\x80\x80", "\xf8\x88\x80\x80\x80" }) {
        EXPECT_EQ(decodeMoveRequest(withSource("\"/" + text + "\"")), std::nullopt) << testing::PrintToString(text);
        EXPECT_EQ(decodeMoveRequest(withMember("\"x\":\"" + text + "\"")), std::nullopt)
            << testing::PrintToString(text);
        EXPECT_EQ(decodeMoveRequest(withMember("\"" + text + "\":1")), std::nullopt) << testing::PrintToString(text);
    }
}

TEST(RequestDecodingTest, ASurrogateWithoutItsPartnerMakesItNoRequest)
{
    for (std::string const text : { R"(\ud834)", R"(\udd1e)", R"(\ud834x)", R"(\ud834\u0041)", R"(\ud834\ud834)",
             R"(\udd1e\ud834)", R"(\ud834\n)" }) {
        EXPECT_EQ(decodeMoveRequest(withSource("\"/" + text + "\"")), std::nullopt) << text;
        EXPECT_EQ(decodeMoveRequest(withMember("\"x\":\"" + text + "\"")), std::nullopt) << text;
    }
}

TEST(RequestDecodingTest, WhatIsNestedTooDeepIsNoRequest)
{
    auto const nested
        = [](std::size_t levels) { return withMember("\"x\":" + std::string(levels, '[') + std::string(levels, ']')); };
    EXPECT_EQ(decodeMoveRequest(nested(100)), moveA);
    EXPECT_EQ(decodeMoveRequest(nested(1000)), std::nullopt);
    EXPECT_EQ(decodeMoveRequest(nested(1'000'000)), std::nullopt);
    EXPECT_EQ(decodeMoveRequest(std::string(1'000'000, '[')), std::nullopt);
    EXPECT_EQ(decodeMoveRequest(R"({"op":)" + std::string(1'000'000, '{')), std::nullopt);
}

TEST(SnapshotDecodingTest, ASnapshotIsReadWithAllItsLevels)
{
    Snapshot const expected { FileTime(std::chrono::seconds(1'794'789'881)),
        { { "A", "/A", { { "b", "/A/b", { { "c", "/A/b/c", {} } } }, { "d", "/A/d", {} } } }, { "B", "/B", {} } } };
    EXPECT_EQ(decodeSnapshot(withRoots(R"([{"name":"A","path":"\/A","children":[
            {"name":"b","path":"/A/b","children":[{"children":[],"name":"c","path":"\/A\/b/c"}]},
            {"name":"d","path":"/A/d","children":[]}]},
        {"path":"/B","children":[],"name":"B"}])")),
        expected);
    EXPECT_EQ(decodeSnapshot(withRoots("[]")), (Snapshot { expected.generated, {} }));
    EXPECT_EQ(decodeSnapshot(R"({"roots":[],"generated":"2026-11-16T01:44:41+01:00"})"),
        (Snapshot { expected.generated, {} }));
}

TEST(SnapshotDecodingTest, OtherMembersAreIgnoredAtEveryLevel)
{
    auto const snapshot = decodeSnapshot(
        R"({"version":{"roots":1},"generated":"2026-11-16T00:44:41Z","roots":[{"name":"A","id":[{"path":1}],)"
        R"("path":"/A","children":[{"icon":null,"name":"b","path":"/A/b","children":[]}]}]})");
    ASSERT_TRUE(snapshot);
    EXPECT_EQ(snapshot->roots, (SnapshotNodes { { "A", "/A", { { "b", "/A/b", {} } } } }));
}

TEST(SnapshotDecodingTest, AFaultAtAnyLevelMakesTheWholeUndecodable)
{
    auto const rootWithChild = [](std::string const& child) {
        return R"([{"name":"R","path":"/R","children":[]},{"name":"A","path":"/A","children":[)" + child + "]}]";
    };
    ASSERT_TRUE(decodeSnapshot(withRoots(rootWithChild(R"({"name":"b","path":"/A/b","children":[]})"))));
    for (std::string const child :
        { R"({"path":"/A/b","children":[]})", R"({"name":"b","children":[]})", R"({"name":"b","path":"/A/b"})",
            R"({"name":null,"path":"/A/b","children":[]})", R"({"name":"b","path":1,"children":[]})",
            R"({"name":"b","path":"/A/b","children":null})", R"({"name":"b","path":"/A/b","children":{}})",
            R"({"name":"b","path":"/A/b","children":"c"})", R"({"name":"b","path":"/A/b","children":["c"]})",
            R"({"name":"b","path":"/A/b","children":[[]]})", R"({"name":"b","path":"/A/b","children":[{}]})",
            R"({"name":"b","path":"/A/b","children":[1]})", "{}", "[]", "null", "1", R"("b")",
            R"({"name":"b","path":"/A/b","children":[]},null)", R"({},{"name":"b","path":"/A/b","children":[]})" })
        EXPECT_EQ(decodeSnapshot(withRoots(rootWithChild(child))), std::nullopt) << child;
    for (std::string const roots : { "null", "{}", R"("/A")", "1", "[null]", "[1]", R"(["/A"])", "[[]]" })
        EXPECT_EQ(decodeSnapshot(withRoots(roots)), std::nullopt) << roots;
}

TEST(SnapshotDecodingTest, WithoutAProperDateNothingIsRead)
{
    ASSERT_TRUE(decodeSnapshot(R"({"generated":"2026-11-16T00:44:41Z","roots":[]})"));
    for (std::string const date : { R"("2026-11-16T00:44:41.678Z")", R"("2026-11-16T00:44:41")",
             R"("2026-11-31T00:00:00Z")", R"("yesterday")", R"("")", "1794789881", "null", "[]", "{}" })
        EXPECT_EQ(decodeSnapshot(R"({"generated":)" + date + R"(,"roots":[]})"), std::nullopt) << date;
    EXPECT_EQ(decodeSnapshot(R"({"roots":[]})"), std::nullopt);
    EXPECT_EQ(decodeSnapshot(R"({"generated":"2026-11-16T00:44:41Z"})"), std::nullopt);
}

TEST(SnapshotDecodingTest, OfAMemberThatStandsThereSeveralTimesTheLastCounts)
{
    auto const snapshot = decodeSnapshot(
        R"({"roots":[1],"generated":"x","generated":"2026-11-16T00:44:41Z","roots":[{"name":"x","path":"/x",)"
        R"("children":[{}],"name":"A","path":"/A","children":[]}]})");
    ASSERT_TRUE(snapshot);
    EXPECT_EQ(snapshot->roots, (SnapshotNodes { { "A", "/A", {} } }));
    EXPECT_EQ(decodeSnapshot(withRoots(R"([],"roots":[{"name":"A","path":"/A","children":[],"children":[1]}])")),
        std::nullopt);
}

}
}
