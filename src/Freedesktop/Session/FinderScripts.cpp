#include "Freedesktop/Session/FinderScripts.h"

#include <optional>

namespace marrowick {

namespace {

constexpr std::string_view selectionText = "tell application \"Finder\" to get (selection as alias list)";
constexpr std::string_view frontWindowText = "tell application \"Finder\" to get (target of front window as alias)";
constexpr std::string_view informationPrefix
    = "tell application \"Finder\" to open information window of (POSIX file \"";
constexpr std::string_view informationSuffix = "\" as alias)";

/// The text of a quoted literal; absent where a quote ends it early or a backslash stands before something else.
std::optional<std::string> unescaped(std::string_view literal)
{
    std::string text;
    for (std::size_t i = 0; i < literal.size(); ++i) {
        if (literal[i] == '"')
            return std::nullopt;
        if (literal[i] == '\\' && (++i == literal.size() || (literal[i] != '\\' && literal[i] != '"')))
            return std::nullopt;
        text += literal[i];
    }
    return text;
}

}

FinderScript parseFinderScript(std::string_view source)
{
    if (source == selectionText)
        return finderScript::Selection {};
    if (source == frontWindowText)
        return finderScript::FrontWindowTarget {};
    bool const asksForInformation = source.size() >= informationPrefix.size() + informationSuffix.size()
        && source.starts_with(informationPrefix) && source.ends_with(informationSuffix);
    if (!asksForInformation)
        return finderScript::NotUnderstood {};
    source.remove_prefix(informationPrefix.size());
    source.remove_suffix(informationSuffix.size());
    auto const path = unescaped(source);
    if (!path || !path->starts_with('/') || path->find('\0') != std::string::npos)
        return finderScript::NotUnderstood {};
    return finderScript::OpenInformationWindow { FileURL(*path) };
}

std::string errorDictionary(std::string_view message, int number)
{
    std::string printed = "{ NSAppleScriptErrorMessage = \"";
    for (char const character : message) {
        if (character == '"' || character == '\\')
            printed += '\\';
        printed += character;
    }
    return printed + "\"; NSAppleScriptErrorNumber = \"" + std::to_string(number) + "\"; }";
}

}
