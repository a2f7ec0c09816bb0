#include "Freedesktop/Files/FreedesktopFormats.h"

#include <chrono>
#include <string>

#include <gtest/gtest.h>
#include <unicode/timezone.h>

namespace marrowick {
namespace {

TEST(DateLocaleTest, TheFirstVariableThatIsNotEmptyCounts)
{
    EXPECT_EQ(dateLocale("de_DE.UTF-8", "fr_FR.UTF-8", "it_IT.UTF-8"), "de_DE");
    EXPECT_EQ(dateLocale(nullptr, "fr_FR.UTF-8", "it_IT.UTF-8"), "fr_FR");
    EXPECT_EQ(dateLocale("", "", "it_IT@euro"), "it_IT");
}

TEST(DateLocaleTest, WithoutALanguageDatesAreEnglish)
{
    for (auto const* value : { "C", "C.UTF-8", "POSIX", "" })
        EXPECT_EQ(dateLocale(value, nullptr, nullptr), "en_US") << value;
    EXPECT_EQ(dateLocale(nullptr, nullptr, nullptr), "en_US");
    EXPECT_EQ(dateLocale("C", "fr_FR.UTF-8", nullptr), "en_US");
}

class FormatsTest : public testing::Test {
protected:
    FormatsTest() { icu::TimeZone::adoptDefault(icu::TimeZone::createTimeZone("Europe/Rome")); }

    /// Without the narrow spaces that newer locale data has.
    static std::string date(std::string const& locale, long seconds)
    {
        auto text = FreedesktopFormats(locale).dateAndTime(FileTime(std::chrono::seconds(seconds)));
        for (auto place = text.find("\u202F"); place != std::string::npos; place = text.find("\u202F"))
            text.replace(place, std::string("\u202F").size(), " ");
        return text;
    }
};

TEST_F(FormatsTest, SizesAreInDecimalUnits)
{
    FreedesktopFormats const formats("en_US");
    EXPECT_EQ(formats.fileSize(0), "0 bytes");
    EXPECT_EQ(formats.fileSize(1), "1 byte");
    EXPECT_EQ(formats.fileSize(999), "999 bytes");
    // A space that does not break stands between number and unit.
    EXPECT_EQ(formats.fileSize(1'500'000), "1.5\u00A0MB");
    EXPECT_EQ(formats.fileSize(5'000'000'000), "5.0\u00A0GB");
}

TEST_F(FormatsTest, DatesAreMediumWithAShortTimeInTheUsersZone)
{
    EXPECT_EQ(date("en_US", 1'700'000'000), "Nov 14, 2023, 11:13 PM");
    EXPECT_EQ(date("de_DE", 1'700'000'000), "14.11.2023, 23:13");
    EXPECT_EQ(date("en_US", -86'400), "Dec 31, 1969, 1:00 AM");
}

TEST_F(FormatsTest, OneObjectWritesManyDates)
{
    FreedesktopFormats const formats("de_DE");
    auto const at = [&](long seconds) { return formats.dateAndTime(FileTime(std::chrono::seconds(seconds))); };
    EXPECT_EQ(at(0), "01.01.1970, 01:00");
    EXPECT_EQ(at(1'700'000'000), "14.11.2023, 23:13");
    EXPECT_EQ(at(0), "01.01.1970, 01:00");
}

}
}
