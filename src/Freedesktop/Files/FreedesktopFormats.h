#pragma once

#include "Platform/Formats.h"

#include <memory>
#include <string>
#include <unicode/datefmt.h>

namespace marrowick {

/// The ICU locale in which the user wants dates, from `LC_ALL`, `LC_TIME` and `LANG`: the first that is not empty. English
/// as in the United States for "C", "POSIX", nothing and what cannot be understood.
std::string dateLocale(char const* all, char const* time, char const* language);

class FreedesktopFormats final : public Formats {
public:
    /// `dateLocale` is an ICU locale.
    explicit FreedesktopFormats(std::string dateLocale);

    /// In decimal units.
    std::string fileSize(std::uint64_t bytes) const override;
    std::string dateAndTime(FileTime time) const override;

private:
    std::string dateLocale_;
    /// Made when it is needed first, which takes as long as all that is written with it.
    mutable std::unique_ptr<icu::DateFormat> dates_;
};

}
