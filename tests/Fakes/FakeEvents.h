#pragma once

#include "Platform/Events.h"

#include <functional>
#include <optional>
#include <utility>

namespace marrowick {

/// The keyboard and the event queue as a test sets them.
class FakeEvents final : public Events {
public:
    ModifierFlags modifierFlags() override { return held; }
    std::optional<Event> currentEvent() override { return current; }

    /// Runs `work` with `event` as the current event.
    void during(std::optional<Event> event, std::function<void()> const& work)
    {
        auto const previous = std::exchange(current, event);
        work();
        current = previous;
    }

    ModifierFlags held;
    std::optional<Event> current;
};

}
