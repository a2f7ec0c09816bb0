#include "Freedesktop/Files/CollationLocale.h"

#include "Fakes/FakeLog.h"
#include "Freedesktop/Files/FreedesktopCollation.h"
#include "Platform/CollationContract.h"

#include <gtest/gtest.h>

namespace marrowick {
namespace {

TEST(CollationLocale, IsTheFirstVariableThatSaysSomething)
{
    struct Row {
        LocaleEnvironment environment;
        char const* locale;
    };
    Row const rows[] = {
        { { nullptr, nullptr, nullptr }, "" },
        { { "", "", "" }, "" },
        { { "de_DE.UTF-8", "fr_FR.UTF-8", "it_IT.UTF-8" }, "de_DE" },
        { { nullptr, "fr_FR.UTF-8", "it_IT.UTF-8" }, "fr_FR" },
        { { "", "", "it_IT.UTF-8" }, "it_IT" },
        { { "C", "fr_FR.UTF-8", "it_IT.UTF-8" }, "" },
        { { nullptr, "POSIX", "it_IT.UTF-8" }, "" },
    };
    for (auto const& row : rows)
        EXPECT_EQ(collationLocale(row.environment), row.locale);
}

TEST(CollationLocale, IsTheLibrarysNameOfTheLocale)
{
    struct Row {
        char const* variable;
        char const* locale;
    };
    Row const rows[] = {
        { "C", "" },
        { "C.UTF-8", "" },
        { "C.utf8", "" },
        { "POSIX", "" },
        { "POSIX.UTF-8", "" },
        { "C@euro", "" },
        { "en_US_POSIX", "" },
        { "de", "de" },
        { "de_DE", "de_DE" },
        { "de_DE.ISO-8859-1", "de_DE" },
        { "de_DE@euro", "de_DE" },
        { "de_DE.UTF-8@euro", "de_DE" },
        { "sr_RS@latin", "sr_Latn_RS" },
        { "sr_RS.UTF-8@latin", "sr_Latn_RS" },
        { "sr@latin", "sr_Latn" },
        { "uz_UZ.UTF-8@cyrillic", "uz_Cyrl_UZ" },
        { "zh_TW.UTF-8", "zh_TW" },
        { "../../../etc/passwd", "" },
        { "@", "" },
        { ".", "" },
    };
    for (auto const& row : rows)
        EXPECT_EQ(collationLocale({ .language = row.variable }), row.locale) << row.variable;
    std::string const veryLong(100000, 'x');
    EXPECT_EQ(collationLocale({ .language = veryLong.c_str() }), "");
}

TEST(CollationLocale, WithoutALanguageTheOrderIsTheRootsNotTheBytes)
{
    FakeLog log;
    for (auto const* variable : { "", "C", "C.UTF-8", "POSIX", "en_US_POSIX" }) {
        FreedesktopCollation const collation(collationLocale({ .language = variable }), log);
        contract::expectOrder(collation, "a", "B");
        contract::expectOrder(collation, "_", "a");
        contract::expectOrder(collation, "\xC3\xA4", "z");
    }
}

TEST(CollationLocale, KnowsWhoWritesADottedCapital)
{
    EXPECT_TRUE(hasTurkicCases("tr_TR"));
    EXPECT_TRUE(hasTurkicCases("az"));
    EXPECT_FALSE(hasTurkicCases("de_DE"));
    EXPECT_FALSE(hasTurkicCases(""));
    EXPECT_FALSE(hasTurkicCases("trv"));
}

}
}
