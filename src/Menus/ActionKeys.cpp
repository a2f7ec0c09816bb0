#include "Menus/ActionKeys.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace marrowick {

namespace {

struct PlainKey {
    std::string_view characters;
    ModifierAction action;
};

constexpr std::array plainKeys {
    PlainKey { "r", ModifierAction::reveal },
    PlainKey { "i", ModifierAction::finderInfo },
    PlainKey { "p", ModifierAction::quickLook },
    PlainKey { "\x7F", ModifierAction::trash },
    PlainKey { "\b", ModifierAction::trash },
    PlainKey { "g", ModifierAction::revealAlternate },
    PlainKey { "q", ModifierAction::quickLookAlternate },
    PlainKey { "\t", ModifierAction::infoWindow },
};

std::optional<ModifierAction> actionOfPlainKey(std::string_view characters)
{
    auto const key = std::find_if(plainKeys.begin(), plainKeys.end(),
        [&](PlainKey const& candidate) { return candidate.characters == characters; });
    return key == plainKeys.end() ? std::nullopt : std::optional(key->action);
}

}

std::optional<ModifierAction> modifierActionFor(KeyEvent const& event)
{
    using namespace modifier;
    auto const held = event.flags & deviceIndependent;
    if (held == (command | option))
        return ModifierAction::finderInfo;
    if (held == (command | option | shift))
        return ModifierAction::quickLook;
    if (held == (command | option | control))
        return ModifierAction::trash;
    if (held == ModifierFlags())
        return actionOfPlainKey(event.charactersIgnoringModifiers);
    if (held == command)
        return ModifierAction::reveal;
    return std::nullopt;
}

}
