#include "Freedesktop/Files/CollationLocale.h"

#include <cstdlib>
#include <string_view>
#include <unicode/uloc.h>

namespace marrowick {

namespace {

/// The library's name of a script for the word that the C library's locales have for it.
std::string scriptOfModifier(std::string_view modifier)
{
    if (modifier == "latin")
        return "Latn";
    if (modifier == "cyrillic")
        return "Cyrl";
    if (modifier == "devanagari")
        return "Deva";
    return {};
}

}

LocaleEnvironment localeEnvironment()
{
    return { .all = std::getenv("LC_ALL"), .collate = std::getenv("LC_COLLATE"), .language = std::getenv("LANG") };
}

std::string collationLocale(LocaleEnvironment const& environment)
{
    std::string_view name;
    for (char const* value : { environment.all, environment.collate, environment.language }) {
        if (name.empty() && value)
            name = value;
    }
    auto const modifierStart = name.find('@');
    auto const modifier = modifierStart == std::string_view::npos ? "" : name.substr(modifierStart + 1);
    std::string locale(name.substr(0, name.find_first_of(".@")));
    if (locale == "C" || locale == "POSIX")
        return {};
    if (auto const script = scriptOfModifier(modifier); !script.empty()) {
        auto const languageEnd = std::min(locale.find('_'), locale.size());
        locale.insert(languageEnd, '_' + script);
    }

    char canonical[ULOC_FULLNAME_CAPACITY] = "";
    UErrorCode error = U_ZERO_ERROR;
    uloc_canonicalize(locale.c_str(), canonical, sizeof canonical, &error);
    if (U_FAILURE(error) || error == U_STRING_NOT_TERMINATED_WARNING)
        return {};
    std::string const result(canonical);
    return result.ends_with("_POSIX") ? std::string() : result;
}

bool hasTurkicCases(std::string const& locale)
{
    char language[ULOC_LANG_CAPACITY] = "";
    UErrorCode error = U_ZERO_ERROR;
    uloc_getLanguage(locale.c_str(), language, sizeof language, &error);
    return U_SUCCESS(error) && (std::string_view(language) == "tr" || std::string_view(language) == "az");
}

}
