#include "Freedesktop/Interface/FreedesktopEvents.h"

#include "Freedesktop/Interface/SessionSupport.h"

#include <gtest/gtest.h>

namespace marrowick {
namespace {

TEST(ModifierFlagsFromTest, EachKeyHasItsBit)
{
    EXPECT_EQ(modifierFlagsFrom(Qt::NoModifier), ModifierFlags());
    EXPECT_EQ(modifierFlagsFrom(Qt::ShiftModifier), modifier::shift);
    EXPECT_EQ(modifierFlagsFrom(Qt::ControlModifier), modifier::control);
    EXPECT_EQ(modifierFlagsFrom(Qt::AltModifier), modifier::option);
    EXPECT_EQ(modifierFlagsFrom(Qt::MetaModifier), modifier::command);
    EXPECT_EQ(modifierFlagsFrom(Qt::ShiftModifier | Qt::MetaModifier), modifier::shift | modifier::command);
    EXPECT_EQ(modifierFlagsFrom(Qt::KeypadModifier | Qt::GroupSwitchModifier), ModifierFlags());
}

TEST(FreedesktopEventsTest, ThereIsNoCurrentEventOutsideOfScopes)
{
    FreedesktopEvents events;
    EXPECT_FALSE(events.currentEvent());
}

TEST(FreedesktopEventsTest, TheEndOfAScopeBringsThePreviousEventBack)
{
    FreedesktopEvents events;
    {
        FreedesktopEvents::Scope outer(events, Event { EventType::leftMouseUp, modifier::shift });
        {
            FreedesktopEvents::Scope inner(events, Event { EventType::keyDown, {} });
            EXPECT_EQ(events.currentEvent()->type, EventType::keyDown);
        }
        {
            FreedesktopEvents::Scope hidden(events, std::nullopt);
            EXPECT_FALSE(events.currentEvent());
        }
        ASSERT_TRUE(events.currentEvent());
        EXPECT_EQ(events.currentEvent()->type, EventType::leftMouseUp);
        EXPECT_EQ(events.currentEvent()->flags, modifier::shift);
    }
    EXPECT_FALSE(events.currentEvent());
}

TEST(FreedesktopEventsTest, HeldKeysAreSeenWithoutAWindowOfTheProgram)
{
    FreedesktopEvents events;
    EXPECT_EQ(events.modifierFlags(), ModifierFlags());
    {
        HeldKey shift(QStringLiteral("Shift_L"));
        EXPECT_EQ(events.modifierFlags(), modifier::shift);
        HeldKey super(QStringLiteral("Super_L"));
        EXPECT_EQ(events.modifierFlags(), modifier::shift | modifier::command);
    }
    {
        HeldKey alt(QStringLiteral("Alt_L"));
        EXPECT_EQ(events.modifierFlags(), modifier::option);
    }
    {
        HeldKey control(QStringLiteral("Control_L"));
        EXPECT_EQ(events.modifierFlags(), modifier::control);
    }
    EXPECT_EQ(events.modifierFlags(), ModifierFlags());
}

}
}
