#include "Support/InternetDate.h"

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;
using std::chrono::seconds;

FileTime at(std::int64_t secondsSince1970)
{
    return FileTime(seconds(secondsSince1970));
}

TEST(InternetDateTest, AMomentIsWrittenInUTCWithWholeSeconds)
{
    struct Row {
        FileTime date;
        std::string text;
    };
    std::vector<Row> const rows {
        { at(1'794'789'881), "2026-11-16T00:44:41Z" },
        { at(0), "1970-01-01T00:00:00Z" },
        { at(951'782'400), "2000-02-29T00:00:00Z" },
        { at(1'709'251'199), "2024-02-29T23:59:59Z" },
        { at(4'107'542'399), "2100-02-28T23:59:59Z" },
        { at(4'107'542'400), "2100-03-01T00:00:00Z" },
        // What is less than a second is dropped, towards the past on both sides of 1970.
        { at(1'794'789'881) + 999'999'999ns, "2026-11-16T00:44:41Z" },
        { at(0) - 1ns, "1969-12-31T23:59:59Z" },
        { FileTime::max(), "2262-04-11T23:47:16Z" },
        { FileTime::min(), "1677-09-21T00:12:43Z" },
    };
    for (auto const& row : rows)
        EXPECT_EQ(internetDateText(row.date), row.text);
}

TEST(InternetDateTest, ATextWithAZoneNamesAMoment)
{
    struct Row {
        std::string text;
        std::int64_t seconds;
    };
    std::vector<Row> const rows {
        { "2026-11-16T00:44:41Z", 1'794'789'881 },
        { "1970-01-01T00:00:00Z", 0 },
        { "1969-12-31T23:59:59Z", -1 },
        { "2000-02-29T00:00:00Z", 951'782'400 },
        { "2024-02-29T23:59:59Z", 1'709'251'199 },
        { "1970-01-01T01:00:00+01:00", 0 },
        { "1970-01-01T00:00:00-01:30", 5'400 },
        { "1970-01-01T00:00:00+00:00", 0 },
        { "1970-01-01T00:00:00-00:00", 0 },
        { "1970-01-01T00:00:00-23:59", 86'340 },
        { "1970-01-01T00:00:00+23:59", -86'340 },
        // The day may be another one in UTC, beyond a leap day too.
        { "2024-03-01T00:30:00+01:00", 1'709'249'400 },
    };
    for (auto const& row : rows)
        EXPECT_EQ(dateFromInternetText(row.text), at(row.seconds)) << row.text;
}

TEST(InternetDateTest, EverythingElseIsNoDate)
{
    std::vector<std::string> const texts {
        "",
        "Z",
        "2026-11-16",
        "2026-11-16T00:44:41",
        "2026-11-16T00:44:41.0Z",
        "2026-11-16T00:44:41.678Z",
        "2026-11-16T00:44:41,5Z",
        "2026-11-16T00:44Z",
        "2026-11-16 00:44:41Z",
        "2026-11-16t00:44:41Z",
        "2026-11-16T00:44:41z",
        " 2026-11-16T00:44:41Z",
        "2026-11-16T00:44:41Z ",
        "2026-11-16T00:44:41Z\n",
        std::string("2026-11-16T00:44:41Z\0", 21),
        "2026-11-16T00:44:41ZZ",
        "20261116T004441Z",
        "2026-320T00:44:41Z",
        "2026-W47-1T00:44:41Z",
        "26-11-16T00:44:41Z",
        "02026-11-16T00:44:41Z",
        "+2026-11-16T00:44:41Z",
        "-026-11-16T00:44:41Z",
        "2026-1-16T00:44:41Z",
        "2026-11-6T00:44:41Z",
        "2026-+1-16T00:44:41Z",
        "2026-11-16T0x:44:41Z",
        "２０26-11-16T00:44:41Z",
        "2026-11-16T00:44:41+01",
        "2026-11-16T00:44:41+0100",
        "2026-11-16T00:44:41+1:00",
        "2026-11-16T00:44:41+01:00Z",
        "2026-11-16T00:44:41+01:00:00",
        "2026-11-16T00:44:41+24:00",
        "2026-11-16T00:44:41+01:60",
        "2026-11-16T00:44:41 01:00",
        "2026-11-16T00:44:41UTC",
    };
    for (auto const& text : texts)
        EXPECT_EQ(dateFromInternetText(text), std::nullopt) << text;
}

TEST(InternetDateTest, DaysAndTimesThatDoNotExistAreNoDates)
{
    for (std::string const text : {
             "2026-00-16T00:44:41Z",
             "2026-13-16T00:44:41Z",
             "2026-11-00T00:44:41Z",
             "2026-11-31T00:44:41Z",
             "2026-01-32T00:44:41Z",
             "2026-02-29T00:44:41Z",
             "1900-02-29T00:44:41Z",
             "2100-02-29T00:00:00Z",
             "2024-02-30T00:00:00Z",
             "2026-11-16T24:00:00Z",
             "2026-11-16T00:60:00Z",
             "2026-11-16T00:44:60Z",
             "2016-12-31T23:59:60Z",
         })
        EXPECT_EQ(dateFromInternetText(text), std::nullopt) << text;
}

TEST(InternetDateTest, MomentsBeyondWhatATimeCountsAreAbsent)
{
    EXPECT_EQ(dateFromInternetText("2262-04-11T23:47:16Z"), at(9'223'372'036));
    EXPECT_EQ(dateFromInternetText("2262-04-11T23:47:17Z"), std::nullopt);
    EXPECT_EQ(dateFromInternetText("2262-04-12T00:47:16+01:00"), at(9'223'372'036));
    EXPECT_EQ(dateFromInternetText("1677-09-21T00:12:44Z"), at(-9'223'372'036));
    EXPECT_EQ(dateFromInternetText("1677-09-21T00:12:43Z"), std::nullopt);
    EXPECT_EQ(dateFromInternetText("0000-01-01T00:00:00Z"), std::nullopt);
    EXPECT_EQ(dateFromInternetText("9999-12-31T23:59:59-23:59"), std::nullopt);
}

}
}
