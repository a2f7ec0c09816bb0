#include "Support/InternetDate.h"

#include <array>
#include <chrono>
#include <cstdio>

namespace marrowick {

namespace {

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::sys_seconds;

/// Takes the number of exactly `digits` digits off the front of `text`.
std::optional<int> takeNumber(std::string_view& text, std::size_t digits)
{
    if (text.size() < digits)
        return std::nullopt;
    int number = 0;
    for (char const digit : text.substr(0, digits)) {
        if (digit < '0' || digit > '9')
            return std::nullopt;
        number = number * 10 + (digit - '0');
    }
    text.remove_prefix(digits);
    return number;
}

/// The numbers of `text`, where it follows the pattern: a digit of the pattern stands for a number of so many digits, any
/// other character for itself.
template<std::size_t count>
std::optional<std::array<int, count>> takeNumbers(std::string_view& text, std::string_view pattern)
{
    std::array<int, count> numbers {};
    std::size_t found = 0;
    for (char const mark : pattern) {
        if (mark >= '1' && mark <= '9') {
            auto const number = takeNumber(text, static_cast<std::size_t>(mark - '0'));
            if (!number)
                return std::nullopt;
            numbers.at(found++) = *number;
        } else {
            if (!text.starts_with(mark))
                return std::nullopt;
            text.remove_prefix(1);
        }
    }
    return numbers;
}

/// How far the zone's clocks are ahead of UTC.
std::optional<std::chrono::minutes> offsetOf(std::string_view zone)
{
    if (zone == "Z")
        return std::chrono::minutes(0);
    bool const isBehind = zone.starts_with('-');
    if (!isBehind && !zone.starts_with('+'))
        return std::nullopt;
    zone.remove_prefix(1);
    auto const time = takeNumbers<2>(zone, "2:2");
    if (!time || !zone.empty() || (*time)[0] > 23 || (*time)[1] > 59)
        return std::nullopt;
    auto const offset = std::chrono::hours((*time)[0]) + std::chrono::minutes((*time)[1]);
    return isBehind ? -offset : offset;
}

}

std::optional<std::string> internetDateText(FileTime date)
{
    auto const seconds = std::chrono::floor<std::chrono::seconds>(date);
    auto const day = std::chrono::floor<days>(seconds);
    std::chrono::year_month_day const calendar(day);
    std::chrono::hh_mm_ss const time(seconds - day);
    int const year = static_cast<int>(calendar.year());
    if (year < 0 || year > 9999)
        return std::nullopt;
    std::array<char, 64> text {};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02dZ", year,
        static_cast<unsigned>(calendar.month()), static_cast<unsigned>(calendar.day()),
        static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
        static_cast<int>(time.seconds().count()));
    return text.data();
}

std::optional<FileTime> dateFromInternetText(std::string_view text)
{
    auto const numbers = takeNumbers<6>(text, "4-2-2T2:2:2");
    auto const offset = numbers ? offsetOf(text) : std::nullopt;
    if (!offset)
        return std::nullopt;
    auto const [year, month, day, hour, minute, second] = *numbers;
    std::chrono::year_month_day const calendar { std::chrono::year(year),
        std::chrono::month(static_cast<unsigned>(month)), std::chrono::day(static_cast<unsigned>(day)) };
    if (!calendar.ok() || hour > 23 || minute > 59 || second > 59)
        return std::nullopt;
    sys_seconds const seconds = sys_days(calendar) + std::chrono::hours(hour) + std::chrono::minutes(minute)
        + std::chrono::seconds(second) - *offset;
    // Nanoseconds count no further than to 2262.
    constexpr auto furthest = std::chrono::floor<std::chrono::seconds>(FileTime::max());
    constexpr auto first = std::chrono::ceil<std::chrono::seconds>(FileTime::min());
    if (seconds < first || seconds > furthest)
        return std::nullopt;
    return FileTime(seconds);
}

}
