#include "Freedesktop/Session/FinderScripts.h"

#include <gtest/gtest.h>

namespace marrowick {

namespace {

constexpr char prefix[] = "tell application \"Finder\" to open information window of (POSIX file \"";
constexpr char suffix[] = "\" as alias)";

/// Escapes as the program does: every backslash doubled, then a backslash before every double quote.
std::string escaped(std::string const& path)
{
    std::string text;
    for (char const character : path) {
        if (character == '\\' || character == '"')
            text += '\\';
        text += character;
    }
    return text;
}

}

TEST(FinderScripts, InformationWindowGivesBackTheExactPath)
{
    for (std::string const path : { "/a", "/a \"b\" c", "/back\\slash", "/end\\", "/\\\"", "/\"", "/\\\\\"\"",
             "/\xFF\n", "/\" as alias)", "/" }) {
        auto const script = parseFinderScript(prefix + escaped(path) + suffix);
        auto const* const window = std::get_if<finderScript::OpenInformationWindow>(&script);
        ASSERT_TRUE(window) << path;
        EXPECT_EQ(window->url.path(), path);
    }
}

TEST(FinderScripts, TheTwoQuestionsAreKnownExactly)
{
    EXPECT_TRUE(std::holds_alternative<finderScript::Selection>(
        parseFinderScript("tell application \"Finder\" to get (selection as alias list)")));
    EXPECT_TRUE(std::holds_alternative<finderScript::FrontWindowTarget>(
        parseFinderScript("tell application \"Finder\" to get (target of front window as alias)")));
}

TEST(FinderScripts, NothingElseIsUnderstood)
{
    std::string const sources[] = {
        "",
        "tell application \"Finder\" to get (selection as alias list) ",
        "Tell application \"Finder\" to get (selection as alias list)",
        "tell application \"Finder\" to empty trash",
        prefix,
        std::string(prefix, sizeof prefix - 2) + suffix,
        std::string(prefix) + suffix,
        std::string(prefix) + "relative" + suffix,
        std::string(prefix) + "/a\"b" + suffix,
        std::string(prefix) + "/a\\b" + suffix,
        std::string(prefix) + "/a\\" + suffix,
        std::string(prefix) + "/a" + std::string(1, '\0') + suffix,
        std::string(prefix) + "/a" + suffix + "\n",
    };
    for (auto const& source : sources)
        EXPECT_TRUE(std::holds_alternative<finderScript::NotUnderstood>(parseFinderScript(source))) << source;
}

TEST(FinderScripts, ErrorDictionaryIsOneLine)
{
    EXPECT_EQ(errorDictionary("No \"x\" \\ here.", -1708),
        "{ NSAppleScriptErrorMessage = \"No \\\"x\\\" \\\\ here.\"; NSAppleScriptErrorNumber = \"-1708\"; }");
}

}
