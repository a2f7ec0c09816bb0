#include "Support/NamingSuffix.h"

#include <algorithm>

namespace marrowick {

namespace {

constexpr std::size_t suffixLength = 4;

std::string_view trimmingSpaces(std::string_view text)
{
    auto const first = text.find_first_not_of(' ');
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

/// Takes an application condition off the end of `rest`. Absent, with `rest` as it was, when there is none or when it
/// names no application.
std::optional<AppConditional> takeAppConditional(std::string_view& rest)
{
    if (!rest.ends_with("-!!!"))
        return std::nullopt;
    auto const beforeMark = rest.substr(0, rest.size() - suffixLength);
    // Without a space the position wraps to 0, so that the token is all of the text.
    auto const tokenStart = beforeMark.rfind(' ') + 1;
    auto token = beforeMark.substr(tokenStart);
    bool const negated = token.starts_with('!');
    if (negated)
        token.remove_prefix(1);
    if (token.empty())
        return std::nullopt;
    rest = trimmingSpaces(beforeMark.substr(0, tokenStart));
    return AppConditional { negated, std::string(token) };
}

/// Takes one code suffix off the end of `rest`; the empty set when there is none.
SuffixCodes takeCodes(std::string_view& rest)
{
    auto const suffix = std::find_if(NamingSuffix::codeSuffixes.begin(), NamingSuffix::codeSuffixes.end(),
        [&](auto const& candidate) { return rest.ends_with(candidate.text); });
    if (suffix == NamingSuffix::codeSuffixes.end())
        return {};
    rest.remove_suffix(suffixLength);
    return suffix->codes;
}

/// Every suffix has a hyphen four bytes before the end; most names have none there.
bool mayEndWithSuffix(std::string_view name)
{
    return name.size() >= suffixLength && name[name.size() - suffixLength] == '-';
}

}

ParsedItemName NamingSuffix::parse(std::string_view name)
{
    if (name.ends_with("-***") || name.ends_with("----"))
        return { std::string(name.substr(0, name.size() - suffixLength)), SuffixCodes::divider, std::nullopt };

    ParsedItemName result;
    auto rest = name;
    while (mayEndWithSuffix(rest)) {
        if (auto condition = takeAppConditional(rest)) {
            // Later turns read further to the left, so the leftmost condition stays.
            result.appConditional = std::move(condition);
            continue;
        }
        auto const codes = takeCodes(rest);
        if (codes.isEmpty())
            break;
        result.codes.insert(codes);
    }
    result.displayName = rest;
    return result;
}

}
