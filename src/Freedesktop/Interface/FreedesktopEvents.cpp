#include "Freedesktop/Interface/FreedesktopEvents.h"

#include <QGuiApplication>

#include <utility>

namespace marrowick {

ModifierFlags modifierFlagsFrom(Qt::KeyboardModifiers modifiers)
{
    ModifierFlags flags;
    if (modifiers.testFlag(Qt::ShiftModifier))
        flags = flags | modifier::shift;
    if (modifiers.testFlag(Qt::ControlModifier))
        flags = flags | modifier::control;
    if (modifiers.testFlag(Qt::AltModifier))
        flags = flags | modifier::option;
    if (modifiers.testFlag(Qt::MetaModifier))
        flags = flags | modifier::command;
    return flags;
}

FreedesktopEvents::Scope::Scope(FreedesktopEvents& events, std::optional<Event> event)
    : events_(events)
    , previous_(std::exchange(events.current_, event))
{
}

FreedesktopEvents::Scope::~Scope()
{
    events_.current_ = previous_;
}

ModifierFlags FreedesktopEvents::modifierFlags()
{
    // The modifiers that Qt remembers are those of the last event of an own window, which may be long past.
    return modifierFlagsFrom(QGuiApplication::queryKeyboardModifiers());
}

std::optional<Event> FreedesktopEvents::currentEvent()
{
    return current_;
}

}
