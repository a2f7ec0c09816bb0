#include "Freedesktop/Files/FreedesktopFormats.h"

#include "Freedesktop/GLibOwners.h"

#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <chrono>
#include <string_view>
#include <utility>

namespace marrowick {

std::string dateLocale(char const* all, char const* time, char const* language)
{
    std::string_view chosen;
    for (auto const* value : { all, time, language }) {
        if (value && *value) {
            chosen = value;
            break;
        }
    }
    auto const name = std::string(chosen.substr(0, chosen.find_first_of(".@")));
    if (name.empty() || name == "C" || name == "POSIX")
        return "en_US";
    auto const locale = icu::Locale::createFromName(name.c_str());
    return locale.isBogus() || !*locale.getLanguage() ? "en_US" : locale.getName();
}

FreedesktopFormats::FreedesktopFormats(std::string dateLocale)
    : dateLocale_(std::move(dateLocale))
{
}

std::string FreedesktopFormats::fileSize(std::uint64_t bytes) const
{
    GStringOwner const text(g_format_size(bytes));
    return text.get();
}

std::string FreedesktopFormats::dateAndTime(FileTime time) const
{
    using Milliseconds = std::chrono::duration<double, std::milli>;
    if (!dates_) {
        dates_.reset(icu::DateFormat::createDateTimeInstance(
            icu::DateFormat::kMedium, icu::DateFormat::kShort, icu::Locale(dateLocale_.c_str())));
    }
    icu::UnicodeString text;
    if (dates_)
        dates_->format(Milliseconds(time.time_since_epoch()).count(), text);
    std::string result;
    text.toUTF8String(result);
    return result;
}

}
