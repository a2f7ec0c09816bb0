#pragma once

#include "Support/AppConditional.h"
#include "Support/SuffixCodes.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace marrowick {

/// What an item's name says.
struct ParsedItemName {
    /// The name without the suffixes that were recognised.
    std::string displayName;
    SuffixCodes codes;
    std::optional<AppConditional> appConditional;
    friend bool operator==(ParsedItemName const&, ParsedItemName const&) = default;
};

/// The suffixes by which a user says how an entry behaves.
class NamingSuffix {
public:
    struct CodeSuffix {
        std::string_view text;
        SuffixCodes codes;
    };

    /// The suffixes that stand for codes, in the order in which they are tried.
    static constexpr std::array<CodeSuffix, 14> codeSuffixes { {
        { "---X", SuffixCodes::noSubmenu },
        { "---x", SuffixCodes::noSubmenu | SuffixCodes::noIcon },
        { "---a", SuffixCodes::allApps },
        { "---d", SuffixCodes::desktop },
        { "---p", SuffixCodes::processes },
        { "---n", SuffixCodes::prefPanes },
        { "---R", SuffixCodes::recentItems },
        { "---C", SuffixCodes::copyTemplate },
        { "---i", SuffixCodes::inlineFolder },
        { "---f", SuffixCodes::needsFinderSelection },
        { "---N", SuffixCodes::needsNoFinderSelection },
        { "---t", SuffixCodes::needsTextSelection },
        { "---z", SuffixCodes::noIcon },
        { "---m", SuffixCodes::reserved },
    } };

    /// Splits a file name, from which an explicit-order prefix has been taken off already. Never fails: a name without
    /// suffixes is its own title.
    static ParsedItemName parse(std::string_view name);
};

}
