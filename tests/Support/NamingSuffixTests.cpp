#include "Support/NamingSuffix.h"

#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {

void PrintTo(ParsedItemName const& parsed, std::ostream* stream)
{
    *stream << '"' << parsed.displayName << "\" codes 0x" << std::hex << parsed.codes.rawValue << std::dec;
    if (auto const& condition = parsed.appConditional)
        *stream << (condition->negated ? " not in " : " in ") << condition->identifierFragment;
}

namespace {

ParsedItemName parsed(std::string title, std::int64_t codes)
{
    return { std::move(title), SuffixCodes(codes), std::nullopt };
}

ParsedItemName shownIn(std::string fragment, std::string title, std::int64_t codes = 0)
{
    return { std::move(title), SuffixCodes(codes), AppConditional { false, std::move(fragment) } };
}

ParsedItemName hiddenIn(std::string fragment, std::string title, std::int64_t codes = 0)
{
    return { std::move(title), SuffixCodes(codes), AppConditional { true, std::move(fragment) } };
}

struct Row {
    std::string name;
    ParsedItemName expected;
};

void expectRows(std::vector<Row> const& rows)
{
    for (auto const& row : rows)
        EXPECT_EQ(NamingSuffix::parse(row.name), row.expected) << row.name;
}

TEST(NamingSuffixTest, ANameWithoutSuffixesIsItsOwnTitle)
{
    expectRows({
        { "Tools", parsed("Tools", 0) },
        { "", parsed("", 0) },
        { "a", parsed("a", 0) },
        { "---", parsed("---", 0) },
        { "Notes.txt", parsed("Notes.txt", 0) },
        { " spaced ", parsed(" spaced ", 0) },
        { "--z", parsed("--z", 0) },
        { "--- z", parsed("--- z", 0) },
        { "-z--", parsed("-z--", 0) },
    });
}

TEST(NamingSuffixTest, EachSuffixHasItsCode)
{
    expectRows({
        { "N---X", parsed("N", 0x1) },
        { "N---z", parsed("N", 0x2) },
        { "N---x", parsed("N", 0x3) },
        { "N---a", parsed("N", 0x4) },
        { "N---d", parsed("N", 0x8) },
        { "N---p", parsed("N", 0x10) },
        { "N---n", parsed("N", 0x20) },
        { "N---R", parsed("N", 0x40) },
        { "N---C", parsed("N", 0x80) },
        { "N---i", parsed("N", 0x100) },
        { "N---f", parsed("N", 0x200) },
        { "N---N", parsed("N", 0x400) },
        { "N---t", parsed("N", 0x800) },
        { "N---m", parsed("N", 0x1000) },
    });
}

TEST(NamingSuffixTest, CodesAreCaseSensitive)
{
    for (char const letter : std::string("ADPrcIFTZMbBq*! "))
        EXPECT_EQ(NamingSuffix::parse(std::string("Apps---") + letter), parsed(std::string("Apps---") + letter, 0));
}

TEST(NamingSuffixTest, TheTableOfSuffixesIsInItsFixedOrder)
{
    std::vector<std::pair<std::string_view, std::int64_t>> const expected {
        { "---X", 0x1 },
        { "---x", 0x3 },
        { "---a", 0x4 },
        { "---d", 0x8 },
        { "---p", 0x10 },
        { "---n", 0x20 },
        { "---R", 0x40 },
        { "---C", 0x80 },
        { "---i", 0x100 },
        { "---f", 0x200 },
        { "---N", 0x400 },
        { "---t", 0x800 },
        { "---z", 0x2 },
        { "---m", 0x1000 },
    };
    ASSERT_EQ(NamingSuffix::codeSuffixes.size(), expected.size());
    for (std::size_t index = 0; index < expected.size(); ++index) {
        EXPECT_EQ(NamingSuffix::codeSuffixes[index].text, expected[index].first);
        EXPECT_EQ(NamingSuffix::codeSuffixes[index].codes.rawValue, expected[index].second);
    }
}

TEST(NamingSuffixTest, ADividerSuffixEndsTheParse)
{
    expectRows({
        { "Line----", parsed("Line", 0x2000) },
        { "Line-***", parsed("Line", 0x2000) },
        { "-***", parsed("", 0x2000) },
        { "----", parsed("", 0x2000) },
        { "Line---z----", parsed("Line---z", 0x2000) },
        { "Line---z-***", parsed("Line---z", 0x2000) },
        { "Edit com.example.Editor-!!!----", parsed("Edit com.example.Editor-!!!", 0x2000) },
        { "Line-----", parsed("Line-", 0x2000) },
        { "Line--------", parsed("Line----", 0x2000) },
        { "Line-***-***", parsed("Line-***", 0x2000) },
    });
}

TEST(NamingSuffixTest, ADividerSuffixCountsOnlyAtTheEndOfTheWholeName)
{
    expectRows({
        { "Line-------z", parsed("Line----", 0x2) },
        { "Line-***---z", parsed("Line-***", 0x2) },
        { "Line----.txt", parsed("Line----.txt", 0) },
        { "----  org.example-!!!", shownIn("org.example", "----") },
    });
}

TEST(NamingSuffixTest, SuffixesStackInAnyOrder)
{
    expectRows({
        { "Folder---x", parsed("Folder", 0x3) },
        { "Folder---X---z", parsed("Folder", 0x3) },
        { "Folder---z---X", parsed("Folder", 0x3) },
        { "Name---f---z", parsed("Name", 0x202) },
        { "Name---z---f", parsed("Name", 0x202) },
        { "Name---z---z---z", parsed("Name", 0x2) },
        { "N---X---z---a---d---p---n---R---C---i---f---N---t---m", parsed("N", 0x1FFF) },
        { "---z", parsed("", 0x2) },
        { "---z---f", parsed("", 0x202) },
        { "Name---q---z", parsed("Name---q", 0x2) },
    });
}

TEST(NamingSuffixTest, SuffixesFollowTheExtension)
{
    expectRows({
        { "Notes.txt---z", parsed("Notes.txt", 0x2) },
        { "Report.pdf---z", parsed("Report.pdf", 0x2) },
        { "Notes---z.txt", parsed("Notes---z.txt", 0) },
        { "Mail.app---z", parsed("Mail.app", 0x2) },
    });
}

TEST(NamingSuffixTest, SpacesBesideACodeBelongToTheTitle)
{
    expectRows({
        { " Name ---z", parsed(" Name ", 0x2) },
        { "Name---z ", parsed("Name---z ", 0) },
    });
}

TEST(NamingSuffixTest, AnApplicationConditionIsTheLastWordBeforeItsMark)
{
    expectRows({
        { "Edit com.example.Editor-!!!", shownIn("com.example.Editor", "Edit") },
        { "Edit !com.example.Editor-!!!", hiddenIn("com.example.Editor", "Edit") },
        { "Edit in a word com.example-!!!", shownIn("com.example", "Edit in a word") },
        { "Edit !!twice-!!!", hiddenIn("!twice", "Edit") },
        { "Edit a!b-!!!", shownIn("a!b", "Edit") },
        { "Edit tab\there-!!!", shownIn("tab\there", "Edit") },
        { "Edit --z-!!!", shownIn("--z", "Edit") },
    });
}

TEST(NamingSuffixTest, WithoutASpaceTheWholeNameIsTheCondition)
{
    expectRows({
        { "Safari-!!!", shownIn("Safari", "") },
        { "!Safari-!!!", hiddenIn("Safari", "") },
        { "Safari-!!!---f", shownIn("Safari", "", 0x200) },
        { " Safari-!!!", shownIn("Safari", "") },
    });
}

TEST(NamingSuffixTest, AConditionThatNamesNothingIsNone)
{
    expectRows({
        { "Edit !-!!!", parsed("Edit !-!!!", 0) },
        { "Edit -!!!", parsed("Edit -!!!", 0) },
        { "-!!!", parsed("-!!!", 0) },
        { "!-!!!", parsed("!-!!!", 0) },
        { "Edit -!!!---z", parsed("Edit -!!!", 0x2) },
        { "Edit---f -!!!", parsed("Edit---f -!!!", 0) },
    });
}

TEST(NamingSuffixTest, SpacesAroundTheTitleOfAConditionalEntryAreTrimmed)
{
    expectRows({
        { "Edit   com.example.Editor-!!!---f", shownIn("com.example.Editor", "Edit", 0x200) },
        { "  Edit  com.example-!!!", shownIn("com.example", "Edit") },
        { "\tEdit\t com.example-!!!", shownIn("com.example", "\tEdit\t") },
        { "Edit\xC2\xA0 com.example-!!!", shownIn("com.example", "Edit\xC2\xA0") },
    });
}

TEST(NamingSuffixTest, CodesMayStandOnBothSidesOfACondition)
{
    expectRows({
        { "Name---f org.example.Editor-!!!", shownIn("org.example.Editor", "Name", 0x200) },
        { "Name org.example.Editor-!!!---f", shownIn("org.example.Editor", "Name", 0x200) },
        { "Name---z org.example.Editor-!!!---f", shownIn("org.example.Editor", "Name", 0x202) },
        { "Name---z---i !org-!!!---f---x", hiddenIn("org", "Name", 0x303) },
        // The code belongs to the word before the mark here.
        { "Name org---f-!!!", shownIn("org---f", "Name") },
    });
}

TEST(NamingSuffixTest, OfSeveralConditionsTheLeftmostWins)
{
    expectRows({
        { "Edit first-!!! second-!!!", shownIn("first", "Edit") },
        { "Edit !first-!!! second-!!!", hiddenIn("first", "Edit") },
        { "Edit first-!!!---z !second-!!!", shownIn("first", "Edit", 0x2) },
        { "first-!!! second-!!!", shownIn("first", "") },
    });
}

TEST(NamingSuffixTest, BytesThatAreNoTextAreKept)
{
    expectRows({
        { "\xFF\xFE---z", parsed("\xFF\xFE", 0x2) },
        { "caf\xE9 \xC3(-!!!", shownIn("\xC3(", "caf\xE9") },
        { "\xF0\x9F\x98----", parsed("\xF0\x9F\x98", 0x2000) },
        { "Schöne Grüße 日本---X", parsed("Schöne Grüße 日本", 0x1) },
    });
}

TEST(NamingSuffixTest, ALongNameOfNothingButSuffixesIsParsedWhole)
{
    std::string name = "N";
    for (int count = 0; count < 100'000; ++count)
        name += "---z";
    EXPECT_EQ(NamingSuffix::parse(name), parsed("N", 0x2));
}

}
}
