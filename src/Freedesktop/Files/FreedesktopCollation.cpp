#include "Freedesktop/Files/FreedesktopCollation.h"

#include "Freedesktop/Files/AsciiSortKeys.h"
#include "Freedesktop/Files/CaseFolding.h"
#include "Freedesktop/Files/CollationLocale.h"
#include "Freedesktop/Files/SortKeys.h"

#include <algorithm>
#include <limits>

namespace marrowick {

namespace {

using CollatorPointer = std::unique_ptr<UCollator, decltype(&ucol_close)>;

CollatorPointer noCollator()
{
    return { nullptr, ucol_close };
}

CollatorPointer configuredCollator(char const* locale, FreedesktopCollation::OpenCollator open)
{
    UErrorCode error = U_ZERO_ERROR;
    CollatorPointer collator(open(locale, &error), ucol_close);
    if (U_FAILURE(error) || !collator)
        return noCollator();
    ucol_setStrength(collator.get(), UCOL_SECONDARY);
    ucol_setAttribute(collator.get(), UCOL_NUMERIC_COLLATION, UCOL_ON, &error);
    ucol_setAttribute(collator.get(), UCOL_NORMALIZATION_MODE, UCOL_ON, &error);
    ucol_setAttribute(collator.get(), UCOL_ALTERNATE_HANDLING, UCOL_NON_IGNORABLE, &error);
    ucol_setAttribute(collator.get(), UCOL_CASE_LEVEL, UCOL_OFF, &error);
    return U_SUCCESS(error) ? std::move(collator) : noCollator();
}

CollatorPointer localeOrRootCollator(std::string const& locale, Log& log, FreedesktopCollation::OpenCollator open)
{
    auto collator = configuredCollator(locale.c_str(), open);
    if (!collator && !locale.empty())
        collator = configuredCollator("", open);
    if (!collator)
        log.write("Marrowick: the order of names by language is not available; names are ordered by their bytes");
    return collator;
}

std::int32_t lengthOf(std::string_view text)
{
    return static_cast<std::int32_t>(std::min<std::size_t>(text.size(), std::numeric_limits<std::int32_t>::max() / 8));
}

}

FreedesktopCollation::FreedesktopCollation(std::string const& locale, Log& log, OpenCollator open)
    : collator_(localeOrRootCollator(locale, log, open))
    , turkicCases_(hasTurkicCases(locale))
{
}

FreedesktopCollation::~FreedesktopCollation() = default;

std::weak_ordering FreedesktopCollation::compare(std::string_view a, std::string_view b) const
{
    if (!collator_)
        return a <=> b;
    UErrorCode error = U_ZERO_ERROR;
    auto const order = ucol_strcollUTF8(collator_.get(), a.data(), lengthOf(a), b.data(), lengthOf(b), &error);
    return static_cast<int>(order) <=> 0;
}

std::unique_ptr<PreparedTexts> FreedesktopCollation::prepare() const
{
    if (!collator_)
        return std::make_unique<SortKeys>();
    return std::make_unique<SortKeys>(collator_.get(), asciiKeys());
}

bool FreedesktopCollation::containsCaseInsensitively(std::string_view text, std::string_view fragment) const
{
    return containsIgnoringCase(text, fragment, turkicCases_);
}

/// Learning the weights takes about a millisecond, so it waits until they are needed.
AsciiSortKeys const& FreedesktopCollation::asciiKeys() const
{
    std::call_once(asciiKeysOnce_, [&] { asciiKeys_ = std::make_unique<AsciiSortKeys const>(collator_.get()); });
    return *asciiKeys_;
}

}
