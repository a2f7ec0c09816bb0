#include "Platform/Events.h"

#include <gtest/gtest.h>

namespace marrowick {
namespace {

TEST(ModifierFlagsTest, EachKeyHasItsBit)
{
    EXPECT_EQ(modifier::capsLock.rawValue(), 0x10000u);
    EXPECT_EQ(modifier::shift.rawValue(), 0x20000u);
    EXPECT_EQ(modifier::control.rawValue(), 0x40000u);
    EXPECT_EQ(modifier::option.rawValue(), 0x80000u);
    EXPECT_EQ(modifier::command.rawValue(), 0x100000u);
}

TEST(ModifierFlagsTest, TheMaskOfTheActionKeysIsShiftControlOptionAndCommand)
{
    EXPECT_EQ(modifier::deviceIndependent.rawValue(), 0x1E0000u);
    EXPECT_EQ(modifier::shift | modifier::control | modifier::option | modifier::command, modifier::deviceIndependent);
}

TEST(ModifierFlagsTest, ContainsMeansAllOfTheKeys)
{
    auto const both = modifier::shift | modifier::command;
    EXPECT_TRUE(both.contains(modifier::shift));
    EXPECT_TRUE(both.contains(both));
    EXPECT_FALSE(modifier::shift.contains(both));
    EXPECT_TRUE(modifier::shift.contains(ModifierFlags()));
}

TEST(EventTypeTest, TheNumbersAreThoseOfTheDesktopsRecords)
{
    EXPECT_EQ(static_cast<int>(EventType::leftMouseDown), 1);
    EXPECT_EQ(static_cast<int>(EventType::leftMouseUp), 2);
    EXPECT_EQ(static_cast<int>(EventType::rightMouseDown), 3);
    EXPECT_EQ(static_cast<int>(EventType::rightMouseUp), 4);
    EXPECT_EQ(static_cast<int>(EventType::keyDown), 10);
}

}
}
