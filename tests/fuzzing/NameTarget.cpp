// What the name of an item says.

#include "fuzzing/Fuzzing.h"

#include "Support/Characters.h"
#include "Support/NamingSuffix.h"

#include <string>
#include <string_view>

namespace marrowick {

namespace {

constexpr std::int64_t everyCode = 0x3FFF;

bool endsWithDivider(std::string_view name)
{
    return name.ends_with("----") || name.ends_with("-***");
}

std::string_view trimmingSpaces(std::string_view text)
{
    while (text.starts_with(' '))
        text.remove_prefix(1);
    while (text.ends_with(' '))
        text.remove_suffix(1);
    return text;
}

void checkParts(std::string_view name, ParsedItemName const& parsed)
{
    auto const isPart = [&](std::string const& part) { return name.find(part) != std::string_view::npos; };
    require(isPart(parsed.displayName), "the title is a part of the name");
    require(parsed.appConditional || name.starts_with(parsed.displayName), "only a condition takes from the front");
    require((parsed.codes.rawValue & ~everyCode) == 0, "no code but those of the table");
    if (isValidUTF8(name))
        require(isValidUTF8(parsed.displayName), "a title of a UTF-8 name is UTF-8");
    if (auto const& condition = parsed.appConditional) {
        require(!condition->identifierFragment.empty(), "a condition names something");
        require(isPart(condition->identifierFragment), "a condition's fragment is a part of the name");
        require(condition->identifierFragment.find(' ') == std::string::npos, "a condition is one word");
        require(
            isValidUTF8(condition->identifierFragment) || !isValidUTF8(name), "a fragment of a UTF-8 name is UTF-8");
    }
    auto const isDivider = parsed.codes.contains(SuffixCodes::divider);
    require(isDivider == endsWithDivider(name), "a name is a divider where it ends like one");
    require(
        !isDivider || (parsed.codes == SuffixCodes::divider && !parsed.appConditional), "a divider is nothing else");
    if (!isDivider && !endsWithDivider(parsed.displayName)) {
        require(NamingSuffix::parse(parsed.displayName) == ParsedItemName { parsed.displayName, {}, std::nullopt },
            "no suffix is left on a title");
    }
}

/// What `name` says when the parse goes on to it from its right: there a divider does not count.
ParsedItemName parsedFurther(std::string_view name)
{
    return endsWithDivider(name) ? ParsedItemName { std::string(name), {}, std::nullopt } : NamingSuffix::parse(name);
}

/// What one more suffix changes, and what it does not.
void checkMoreSuffixes(std::string const& name)
{
    for (auto const& suffix : NamingSuffix::codeSuffixes) {
        auto expected = parsedFurther(name);
        expected.codes.insert(suffix.codes);
        require(
            NamingSuffix::parse(name + std::string(suffix.text)) == expected, "a code adds itself and nothing else");
    }
    for (char const* divider : { "----", "-***" }) {
        require(NamingSuffix::parse(name + divider) == ParsedItemName { name, SuffixCodes::divider, std::nullopt },
            "a divider is looked at alone");
    }
    for (bool const negated : { false, true }) {
        auto expected = parsedFurther(trimmingSpaces(name));
        if (!expected.appConditional)
            expected.appConditional = AppConditional { negated, "org.example" };
        require(NamingSuffix::parse(name + (negated ? " !" : " ") + "org.example-!!!") == expected,
            "a condition counts where there is none further to the left");
    }
    require(NamingSuffix::parse(name + ".") == ParsedItemName { name + ".", {}, std::nullopt },
        "suffixes count at the very end only");
}

}

void fuzz(std::string_view input)
{
    checkParts(input, NamingSuffix::parse(input));
    checkMoreSuffixes(std::string(input));
}

}
