#include "Support/RequestRules.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

FileURL const dest("/x/Dest", true);

TEST(RequestRulesTest, FourOperationsAreAllowedInExactlyTheirSpelling)
{
    for (auto const* const op : { "ask", "move", "copy", "alias" })
        EXPECT_TRUE(RequestRules::isAllowed(op)) << op;
    for (auto const* const op :
        { "", "Move", "MOVE", "move ", " move", "moves", "mov", "Ask", "link", "delete", "trash" })
        EXPECT_FALSE(RequestRules::isAllowed(op)) << op;
    EXPECT_FALSE(RequestRules::isAllowed(std::string_view("move\0", 5)));
}

TEST(RequestRulesTest, EveryOperationButAskingSaysHowItemsAreTransferred)
{
    EXPECT_EQ(RequestRules::mode("move"), TransferMode::move);
    EXPECT_EQ(RequestRules::mode("copy"), TransferMode::copy);
    EXPECT_EQ(RequestRules::mode("alias"), TransferMode::alias);
    EXPECT_EQ(RequestRules::mode("ask"), std::nullopt);
    EXPECT_EQ(RequestRules::mode("Move"), std::nullopt);
    for (auto const mode : { TransferMode::move, TransferMode::copy, TransferMode::alias })
        EXPECT_EQ(RequestRules::mode(RequestRules::operation(mode)), mode);
}

TEST(RequestRulesTest, TheQuestionHasFourButtonsAndTheStyleThatAlertsHave)
{
    auto const alert = RequestRules::question({ "ask", "/x/Dest", { "/a.txt" } }, dest);
    EXPECT_EQ(alert.style, Alert {}.style);
    EXPECT_EQ(alert.lineFeed, LineFeed::ofName);
    EXPECT_EQ(alert.messageText, "What would you like to do?");
    EXPECT_EQ(alert.buttons, (std::vector<std::string> { "Move Here", "Copy Here", "Alias Here", "Cancel" }));
}

TEST(RequestRulesTest, TheQuestionNamesOneItemAndCountsSeveral)
{
    struct Row {
        std::vector<std::string> sources;
        FileURL destination;
        std::string text;
    };
    std::vector<Row> const rows {
        { { "/y/a.txt" }, dest, "\u201ca.txt\u201d \u2192 \u201cDest\u201d" },
        { { "/y/a", "/y/b", "/y/c" }, dest, "3 items \u2192 \u201cDest\u201d" },
        { { "/y/a", "/y/a" }, dest, "2 items \u2192 \u201cDest\u201d" },
        { {}, dest, "0 items \u2192 \u201cDest\u201d" },
        { { "/y/folder/" }, dest, "\u201cfolder\u201d \u2192 \u201cDest\u201d" },
        { { "/" }, FileURL("/", true), "\u201c/\u201d \u2192 \u201c/\u201d" },
        { { "/y/%n 100% & <b>" }, FileURL("/x/%s", true), "\u201c%n 100% & <b>\u201d \u2192 \u201c%s\u201d" },
        { std::vector<std::string>(1234, "/a"), dest, "1234 items \u2192 \u201cDest\u201d" },
    };
    for (auto const& row : rows)
        EXPECT_EQ(RequestRules::question({ "ask", "", row.sources }, row.destination).informativeText, row.text);
}

TEST(RequestRulesTest, TheFirstThreeAnswersAreTheOperationsAndAllOthersCancel)
{
    EXPECT_EQ(RequestRules::mode(0U), TransferMode::move);
    EXPECT_EQ(RequestRules::mode(1U), TransferMode::copy);
    EXPECT_EQ(RequestRules::mode(2U), TransferMode::alias);
    EXPECT_EQ(RequestRules::mode(3U), std::nullopt);
    EXPECT_EQ(RequestRules::mode(4U), std::nullopt);
    EXPECT_EQ(RequestRules::mode(static_cast<std::size_t>(-1)), std::nullopt);
}

TEST(RequestRulesTest, AnItemIsJudgedByTheTwoLocations)
{
    using enum ItemVerdict;
    struct Row {
        std::string item;
        std::string destination;
        ItemVerdict move;
        ItemVerdict copy;
    };
    std::vector<Row> const rows {
        { "/y/a", "/x", transfer, transfer },
        // Into the folder that holds it.
        { "/x/a", "/x", skip, transfer },
        { "/x/a/", "/x", skip, transfer },
        { "/x/./a", "/x", skip, transfer },
        { "//x//a", "/x", skip, transfer },
        { "/x/y/../a", "/x", skip, transfer },
        { "/x/../x/a", "/x", skip, transfer },
        { "/../x/a", "/x", skip, transfer },
        { "/a", "/", skip, transfer },
        { "/x/a", "/x/y/..", skip, transfer },
        { "/x/a", "/x/", skip, transfer },
        { "/x/a", "//x/.", skip, transfer },
        { "/X/a", "/x", transfer, transfer },
        { "/x/y/a", "/x", transfer, transfer },
        { "/xy/a", "/x", transfer, transfer },
        // Into itself, at any depth.
        { "/x/F", "/x/F/G", refuse, refuse },
        { "/x/F", "/x/F/G/H", refuse, refuse },
        { "/x/F/", "/x/F/G", refuse, refuse },
        { "/x//F/.", "/x/F/G", refuse, refuse },
        { "/x/y/../F", "/x/F/G", refuse, refuse },
        { "/x/F", "/x/y/../F/G", refuse, refuse },
        { "/x/F", "/x//F//G", refuse, refuse },
        // Exactly into itself: left to the file system.
        { "/x/F", "/x/F", transfer, transfer },
        { "/x/F/", "/x/F", transfer, transfer },
        { "/x/F", "/x/FG", transfer, transfer },
        { "/x/F", "/x/f/G", transfer, transfer },
        { "/x/F", "/x/F/../G", transfer, transfer },
        { "/", "/x", transfer, transfer },
    };
    for (auto const& row : rows) {
        FileURL const item(row.item);
        FileURL const destination(row.destination, true);
        auto const text = row.item + " into " + row.destination;
        EXPECT_EQ(RequestRules::verdict(item, destination, TransferMode::move), row.move) << "move " << text;
        EXPECT_EQ(RequestRules::verdict(item, destination, TransferMode::alias), row.move) << "alias " << text;
        EXPECT_EQ(RequestRules::verdict(item, destination, TransferMode::copy), row.copy) << "copy " << text;
    }
}

TEST(RequestRulesTest, TheLinesOfAReportNameTheItem)
{
    EXPECT_EQ(RequestRules::refusal(FileURL("/x/F")), "Can't put \u201cF\u201d inside itself.");
    EXPECT_EQ(RequestRules::refusal(FileURL("/x/F/")), "Can't put \u201cF\u201d inside itself.");
    EXPECT_EQ(RequestRules::failure(FileURL("/x/a b"), "No %s."), "\u201ca b\u201d: No %s.");
}

TEST(RequestRulesTest, TheReportIsAWarningOfAllLinesWithoutButtonsOfItsOwn)
{
    auto const alert = RequestRules::report(TransferMode::move, { "one", "two", "two" });
    EXPECT_EQ(alert.style, AlertStyle::warning);
    EXPECT_EQ(alert.messageText, "Marrowick couldn't move everything");
    EXPECT_EQ(alert.informativeText, "one\ntwo\ntwo");
    EXPECT_TRUE(alert.buttons.empty());
    EXPECT_EQ(alert.lineFeed, LineFeed::endOfLine);
    EXPECT_EQ(RequestRules::report(TransferMode::copy, { "one" }).messageText, "Marrowick couldn't copy everything");
    EXPECT_EQ(RequestRules::report(TransferMode::alias, { "one" }).messageText, "Marrowick couldn't alias everything");
    EXPECT_EQ(RequestRules::report(TransferMode::alias, { "one" }).informativeText, "one");
}

TEST(RequestRulesTest, ALineEndInANameMakesNoLineOfTheReport)
{
    auto const line = RequestRules::refusal(FileURL("/x/a\nCan't put “b” inside itself."));
    EXPECT_EQ(RequestRules::report(TransferMode::move, { line, "two" }).informativeText,
        "Can't put “a␊Can't put “b” inside itself.” inside itself.\ntwo");
}

}
}
