#pragma once

#include <string>

namespace marrowick {

/// The values of the environment variables that choose the order of names; null where a variable is not set.
struct LocaleEnvironment {
    char const* all = nullptr;
    char const* collate = nullptr;
    char const* language = nullptr;
};

/// `LC_ALL`, `LC_COLLATE` and `LANG` of this process.
LocaleEnvironment localeEnvironment();

/// The ICU locale whose order the user wants, from the first variable that is not empty. Empty, which is ICU's root
/// locale, for "C", "POSIX", nothing and what cannot be understood: the library's own "en_US_POSIX" would order by bytes.
std::string collationLocale(LocaleEnvironment const& environment);

/// Whether the locale's small i has a dotted capital, and its dotless i a plain one.
bool hasTurkicCases(std::string const& locale);

}
