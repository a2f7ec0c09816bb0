#pragma once

#include "Platform/Events.h"

#include <Qt>

#include <optional>

namespace marrowick {

/// Super is Command, Alt is Option, Ctrl is Control, Shift is Shift; the key pad and the group switch are nothing.
ModifierFlags modifierFlagsFrom(Qt::KeyboardModifiers modifiers);

/// The keyboard as the display server knows it, and the event that is being handled as the adapter's other classes
/// tell it.
class FreedesktopEvents : public Events {
public:
    /// Makes `event` the current one for its own lifetime. Scopes nest; an absent event hides that of the scope around.
    class Scope {
    public:
        Scope(FreedesktopEvents& events, std::optional<Event> event);
        ~Scope();
        Scope(Scope const&) = delete;
        Scope& operator=(Scope const&) = delete;

    private:
        FreedesktopEvents& events_;
        std::optional<Event> previous_;
    };

    ModifierFlags modifierFlags() override;
    std::optional<Event> currentEvent() override;

private:
    std::optional<Event> current_;
};

}
