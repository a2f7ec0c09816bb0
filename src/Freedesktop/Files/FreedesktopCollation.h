#pragma once

#include "Platform/Collation.h"
#include "Platform/Log.h"

#include <memory>
#include <mutex>
#include <string>
#include <unicode/ucol.h>

namespace marrowick {

class AsciiSortKeys;

/// The order of names by ICU's collator for a locale. Texts that are not valid UTF-8 are ordered as they are shown, with
/// U+FFFD for each ill-formed sequence. Without any collator the order is that of the bytes, and the log says so.
class FreedesktopCollation final : public Collation {
public:
    /// How a collator is had: `ucol_open`, or a test's stand-in.
    using OpenCollator = UCollator* (*)(char const* locale, UErrorCode* error);

    /// `locale` is an ICU locale, such as `collationLocale` tells; one that is not known has the root's order.
    FreedesktopCollation(std::string const& locale, Log& log, OpenCollator open = ucol_open);
    ~FreedesktopCollation() override;

    std::weak_ordering compare(std::string_view a, std::string_view b) const override;
    using Collation::prepare;
    std::unique_ptr<PreparedTexts> prepare() const override;
    bool containsCaseInsensitively(std::string_view text, std::string_view fragment) const override;

private:
    AsciiSortKeys const& asciiKeys() const;

    /// Not changed after the construction, so that several threads may ask it at the same time. Null where there is none.
    std::unique_ptr<UCollator, decltype(&ucol_close)> collator_;
    bool turkicCases_;
    mutable std::once_flag asciiKeysOnce_;
    mutable std::unique_ptr<AsciiSortKeys const> asciiKeys_;
};

}
