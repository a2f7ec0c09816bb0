#include "Platform/NameList.h"

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

using Names = std::vector<std::string>;

Names namesIn(NameList const& list)
{
    Names names;
    for (std::size_t index = 0; index < list.size(); ++index)
        names.emplace_back(list[index]);
    return names;
}

NameList listOf(Names const& names)
{
    NameList list;
    for (auto const& name : names)
        list.add(name);
    return list;
}

TEST(NameListTest, NamesStandInTheOrderInWhichTheyWereAdded)
{
    EXPECT_EQ(namesIn(NameList()), Names {});
    Names const names { "b", "", std::string("a\0z", 3), std::string(10'000, 'x'), "b" };
    EXPECT_EQ(namesIn(listOf(names)), names);
}

TEST(NameListTest, TheLastNamesAreTakenAwayAndOthersTakeTheirPlace)
{
    auto list = listOf({ "first", "second", "third" });
    list.shrink(4);
    list.shrink(3);
    EXPECT_EQ(list.size(), 3U);
    list.shrink(1);
    list.add("another");
    EXPECT_EQ(namesIn(list), (Names { "first", "another" }));
    list.shrink(0);
    EXPECT_EQ(list.size(), 0U);
    list.add("last");
    EXPECT_EQ(namesIn(list), Names { "last" });
}

TEST(NameListTest, OnlyNamesFromAPlaceOnAreRemoved)
{
    auto list = listOf({ "x1", "x2", "a", "x3", "b", "x4" });
    list.removeIf(1, [](std::string_view name) { return name.starts_with('x'); });
    EXPECT_EQ(namesIn(list), (Names { "x1", "a", "b" }));
    list.removeIf(0, [](std::string_view) { return false; });
    list.removeIf(3, [](std::string_view) { return true; });
    EXPECT_EQ(list.size(), 3U);
    // What follows does not meet with what was removed.
    list.shrink(2);
    list.add("c");
    EXPECT_EQ(namesIn(list), (Names { "x1", "a", "c" }));
    list.removeIf(0, [](std::string_view) { return true; });
    list.shrink(0);
    list.add("d");
    EXPECT_EQ(namesIn(list), Names { "d" });
}

}
}
