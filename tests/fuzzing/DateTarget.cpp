// The date of a snapshot: as text, and as the number that the first eight bytes of an input are.

#include "fuzzing/Fuzzing.h"

#include "Support/InternetDate.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include <time.h>

namespace marrowick {

namespace {

using std::chrono::seconds;

seconds wholeSeconds(FileTime date)
{
    return std::chrono::floor<seconds>(date.time_since_epoch());
}

/// As the C library writes it.
std::string libraryText(FileTime date)
{
    time_t const time = wholeSeconds(date).count();
    tm parts {};
    gmtime_r(&time, &parts);
    std::array<char, 64> text {};
    strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts);
    return text.data();
}

void checkText(std::string_view text)
{
    auto const date = dateFromInternetText(text);
    if (!date)
        return;
    auto const local = std::string(text.substr(0, 19)) + 'Z';
    auto const utc = internetDateText(*date);
    require(utc == libraryText(*date), "the calendar is the C library's");
    require(dateFromInternetText(*utc) == date, "a date that is written reads the same");
    if (text.ends_with('Z')) {
        require(utc == text, "a date in UTC has one form");
        return;
    }
    require(text.size() == 25, "an offset has one form");
    auto const sign = text[19] == '-' ? -1 : 1;
    auto const number = [&](std::size_t at) { return (text[at] - '0') * 10 + (text[at + 1] - '0'); };
    auto const offset = seconds(sign * (number(20) * 3600 + number(23) * 60));
    if (auto const unshifted = dateFromInternetText(local))
        require(wholeSeconds(*unshifted) - offset == wholeSeconds(*date), "an offset moves the date by itself");
}

void checkNumber(std::int64_t nanoseconds)
{
    FileTime const date { std::chrono::nanoseconds(nanoseconds) };
    auto const text = internetDateText(date);
    require(text == libraryText(date), "every date that nanoseconds count has a text");
    // The first moment has no whole second at or before it.
    if (wholeSeconds(date) >= std::chrono::ceil<seconds>(FileTime::min().time_since_epoch()))
        require(dateFromInternetText(*text) == FileTime(wholeSeconds(date)), "a text names its second");
}

}

void fuzz(std::string_view input)
{
    checkText(input);
    std::int64_t nanoseconds = 0;
    if (input.size() >= sizeof nanoseconds) {
        std::memcpy(&nanoseconds, input.data(), sizeof nanoseconds);
        checkNumber(nanoseconds);
    }
}

}
