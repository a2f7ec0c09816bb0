#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace marrowick {

/// A set of modifier keys, with the bits that key and mouse events carry.
class ModifierFlags {
public:
    constexpr ModifierFlags() = default;
    constexpr explicit ModifierFlags(std::uint64_t rawValue)
        : rawValue_(rawValue)
    {
    }

    constexpr std::uint64_t rawValue() const { return rawValue_; }
    constexpr bool contains(ModifierFlags other) const { return (rawValue_ & other.rawValue_) == other.rawValue_; }

    friend constexpr ModifierFlags operator|(ModifierFlags a, ModifierFlags b)
    {
        return ModifierFlags(a.rawValue_ | b.rawValue_);
    }
    friend constexpr ModifierFlags operator&(ModifierFlags a, ModifierFlags b)
    {
        return ModifierFlags(a.rawValue_ & b.rawValue_);
    }
    friend constexpr bool operator==(ModifierFlags, ModifierFlags) = default;

private:
    std::uint64_t rawValue_ = 0;
};

namespace modifier {
inline constexpr ModifierFlags capsLock { 0x10000 };
inline constexpr ModifierFlags shift { 0x20000 };
inline constexpr ModifierFlags control { 0x40000 };
inline constexpr ModifierFlags option { 0x80000 };
inline constexpr ModifierFlags command { 0x100000 };
inline constexpr ModifierFlags function { 0x800000 };
/// Shift, Control, Option and Command: the keys that choose an action.
inline constexpr ModifierFlags deviceIndependent { 0x1E0000 };
}

/// The event numbers of the desktop's event records.
enum class EventType : std::uint8_t {
    leftMouseDown = 1,
    leftMouseUp = 2,
    rightMouseDown = 3,
    rightMouseUp = 4,
    keyDown = 10,
    keyUp = 11,
    /// An action that reached the program from outside its windows: a second start, an accessibility client.
    applicationDefined = 15,
};

/// A user's action that is being handled.
struct Event {
    EventType type = EventType::applicationDefined;
    ModifierFlags flags;
};

struct KeyEvent {
    EventType type = EventType::keyDown;
    ModifierFlags flags;
    /// The key's text as it would be without Control, Option and Command; Shift counts. Empty for keys without text.
    std::string charactersIgnoringModifiers;
};

/// What the user is doing. Every call is made on the main thread.
class Events {
public:
    virtual ~Events() = default;

    /// The modifier keys that are held down at this moment.
    virtual ModifierFlags modifierFlags() = 0;

    /// The event that led to this call, also where the desktop side queued the call in between; absent in timers,
    /// watches and replies.
    virtual std::optional<Event> currentEvent() = 0;
};

}
