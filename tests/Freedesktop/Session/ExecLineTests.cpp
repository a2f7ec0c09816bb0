#include "Freedesktop/Session/ExecLine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <ostream>

namespace marrowick {

namespace {

using Words = std::vector<std::string>;

struct ExpansionRow {
    char const* name;
    std::string exec;
    std::optional<std::string> file;
    Words command;
};

void PrintTo(ExpansionRow const& row, std::ostream* stream)
{
    *stream << row.exec;
}

class ExecLineExpansion : public testing::TestWithParam<ExpansionRow> { };

std::string rowName(testing::TestParamInfo<ExpansionRow> const& info)
{
    return info.param.name;
}

std::string const oddFile = "/srv/-a b%\xFF\n\"'$x";

}

TEST_P(ExecLineExpansion, GivesTheWordsOfTheCommand)
{
    std::vector<std::string> files;
    if (GetParam().file)
        files.push_back(*GetParam().file);
    ExecFields const fields {
        .files = files, .localizedName = "A Name", .icon = "icon name", .entryPath = "/usr/share/applications/a.desktop"
    };
    std::vector<Words> commands;
    if (!GetParam().command.empty())
        commands.push_back(GetParam().command);
    EXPECT_EQ(expandExecLine(GetParam().exec, fields), commands);
}

INSTANTIATE_TEST_SUITE_P(Rows, ExecLineExpansion,
    testing::Values(ExpansionRow { "Plain", "tool --new", std::nullopt, { "tool", "--new" } },
        ExpansionRow { "PathForSmallF", "tool %f", "/a b", { "tool", "/a b" } },
        ExpansionRow { "PathForLargeF", "tool -- %F", "/a b", { "tool", "--", "/a b" } },
        ExpansionRow { "URIForSmallU", "tool %u", "/a b", { "tool", "file:///a%20b" } },
        ExpansionRow { "URIForLargeU", "tool %U", "/a b", { "tool", "file:///a%20b" } },
        ExpansionRow { "ExactBytesInPath", "tool %f", oddFile, { "tool", oddFile } },
        ExpansionRow { "ExactBytesInURI", "tool %u", oddFile, { "tool", "file:///srv/-a%20b%25%FF%0A%22'$x" } },
        ExpansionRow { "FileInsideWord", "tool --open=%f", "/a b", { "tool", "--open=/a b" } },
        ExpansionRow { "FileThatNobodyAskedFor", "tool -x", "/a", { "tool", "-x", "/a" } },
        ExpansionRow { "NoFileLeavesNoWord", "tool %U --last", std::nullopt, { "tool", "--last" } },
        ExpansionRow { "EmptyQuotedWordStays", "tool \"\" %f", std::nullopt, { "tool", "" } },
        ExpansionRow { "Icon", "tool %i", std::nullopt, { "tool", "--icon", "icon name" } },
        ExpansionRow {
            "NameAndEntry", "tool %c %k", std::nullopt, { "tool", "A Name", "/usr/share/applications/a.desktop" } },
        ExpansionRow { "Percent", "tool 100%% %%f", "/a", { "tool", "100%", "%f", "/a" } },
        ExpansionRow { "CodesOfThePast", "tool %d %D %n %N %v %m end", std::nullopt, { "tool", "end" } },
        ExpansionRow { "PercentAtTheEnd", "tool x%", std::nullopt, { "tool", "x%" } },
        ExpansionRow { "Quotes", "\"/opt/my tool/run\" \"a \\\"b\\\"\" 'c d'", std::nullopt,
            { "/opt/my tool/run", "a \"b\"", "c d" } },
        ExpansionRow { "OpenQuote", "tool \"a", std::nullopt, {} }, ExpansionRow { "Empty", "", "/a", {} },
        ExpansionRow {
            "NoShellAtWork", "tool $HOME ;ls|x `id` *", std::nullopt, { "tool", "$HOME", ";ls|x", "`id`", "*" } }),
    rowName);

TEST(ExecLineOfSeveralFiles, IsStartedOnceWhereItTakesThemAndElseForEach)
{
    ExecFields const fields { .files = { "/a", "/b c" }, .localizedName = "N", .icon = {}, .entryPath = {} };
    struct {
        std::string exec;
        std::vector<Words> commands;
    } const rows[] = {
        { "tool %F end", { { "tool", "/a", "/b c", "end" } } },
        { "tool %U", { { "tool", "file:///a", "file:///b%20c" } } },
        { "tool %f", { { "tool", "/a" }, { "tool", "/b c" } } },
        { "tool -- %u", { { "tool", "--", "file:///a" }, { "tool", "--", "file:///b%20c" } } },
        { "tool --open=%F", { { "tool", "--open=/a" }, { "tool", "--open=/b c" } } },
        { "tool %c", { { "tool", "N", "/a" }, { "tool", "N", "/b c" } } },
        { "tool %%F", { { "tool", "%F", "/a" }, { "tool", "%F", "/b c" } } },
        { "", {} },
    };
    for (auto const& row : rows)
        EXPECT_EQ(expandExecLine(row.exec, fields), row.commands) << row.exec;
}

TEST(SoleProgramOfExecLine, IsEmptyWhereAnotherWordMayNameTheProgram)
{
    struct {
        std::string exec;
        std::string program;
    } const rows[] = {
        { "firefox %u", "firefox" },
        { "/usr/bin/thunar --bulk-rename %F", "thunar" },
        { "\"/opt/my tool/run\"", "run" },
        { "python3 /opt/script.py", "" },
        { "env A=b tool", "" },
        { "sh -c \"tool\"", "" },
        { "flatpak run org.example.Tool", "" },
        { "tool %%", "" },
        { "", "" },
        { "\"", "" },
    };
    for (auto const& row : rows)
        EXPECT_EQ(soleProgramOfExecLine(row.exec), row.program) << row.exec;
}

TEST(FileURIOf, IsEmptyForWhatIsNotAbsolute)
{
    EXPECT_EQ(fileURIOf(""), "");
    EXPECT_EQ(fileURIOf("a/b"), "");
    EXPECT_EQ(fileURIOf("/"), "file:///");
}

}
