#include "Support/ExchangeCoding.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include <sys/resource.h>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

constexpr std::size_t mebibyte = std::size_t { 1024 } * 1024;
constexpr std::size_t textSize = 4 * mebibyte;

/// About `textSize` bytes.
std::string repeated(std::string_view begin, std::string_view unit, std::string_view end)
{
    std::string text(begin);
    text.reserve(textSize + begin.size() + end.size() + unit.size());
    while (text.size() < textSize)
        text += unit;
    return text += end;
}

/// How much the process has grown at most, in bytes.
std::size_t mostMemory()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<std::size_t>(usage.ru_maxrss) * 1024;
}

/// Ends the process; for one that has been made for it alone.
[[noreturn]] void decodeWithinBounds(std::string_view text, std::size_t most)
{
    auto const before = mostMemory();
    static_cast<void>(decodeMoveRequest(text));
    static_cast<void>(decodeSnapshot(text));
    auto const taken = mostMemory() - before;
    if (taken > most)
        std::fprintf(stderr, "%zu bytes were taken\n", taken);
    std::_Exit(taken > most ? 1 : 0);
}

class ExchangeHostileTest : public testing::Test {
protected:
    ExchangeHostileTest() { GTEST_FLAG_SET(death_test_style, "fast"); }
};

TEST_F(ExchangeHostileTest, TextThatIsOfNoUseTakesNoMemory)
{
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "The sanitizer keeps what was freed; without it the test runs.";
#endif
    struct Row {
        std::string_view begin;
        std::string_view unit;
        std::string_view end;
    };
    for (auto const& row : {
             Row { "[0", ",0", "" },
             Row { "[0", ",0", "]" },
             Row { R"({"x":[0)", ",0", "]}" },
             Row { R"({"sources":[0)", ",0", "]}" },
             Row { R"({"sources":["/")", R"(,"/",{})", "]}" },
             Row { R"({"x":[{})", ",{}", "]}" },
             Row { R"({"roots":[{})", ",{}", "]}" },
             Row { R"({"roots":[[])", ",[]", "]}" },
             Row { R"({"x":0)", R"(,"x":0)", "}" },
             Row { R"({"op":"")", R"(,"op":"move")", "}" },
             Row { R"({"sources":[])", R"(,"sources":["/a","/b"])", "}" },
             Row { R"({"roots":[])", R"(,"roots":[{"name":"","path":"","children":[]}])", "}" },
             Row { R"({"x":")", "xxxxxxxx", R"("})" },
             Row { R"({"x":)", "11111111", "}" },
             Row { "", "        ", "" },
         }) {
        auto const text = repeated(row.begin, row.unit, row.end);
        EXPECT_EXIT(decodeWithinBounds(text, textSize / 2), testing::ExitedWithCode(0), "") << row.begin << row.unit;
    }
}

TEST_F(ExchangeHostileTest, WhatIsOfUseTakesAFewTimesTheRoomOfItsText)
{
    auto const sources = repeated(R"({"op":"move","dest":"/d","sources":["/")", R"(,"/an/item/of/some/folder")", "]}");
    EXPECT_EXIT(decodeWithinBounds(sources, 8 * textSize), testing::ExitedWithCode(0), "");
    EXPECT_GT(decodeMoveRequest(sources)->sources.size(), 100'000u);
}

TEST_F(ExchangeHostileTest, AListOfMoreThanAMillionIsNone)
{
    auto const request = [](std::size_t count) {
        std::string text = R"({"op":"move","dest":"/d","sources":[)";
        for (std::size_t i = 0; i < count; ++i)
            text += i == 0 ? R"("/")" : R"(,"/")";
        return text + "]}";
    };
    EXPECT_EQ(decodeMoveRequest(request(1'000'000)).value_or(MoveRequest {}).sources.size(), 1'000'000u);
    EXPECT_FALSE(decodeMoveRequest(request(1'000'001)));
}

}
}
