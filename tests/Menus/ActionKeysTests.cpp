#include "Menus/ActionKeys.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

using enum ModifierAction;

/// The four bits of a row of modifier keys.
constexpr unsigned shiftBit = 1;
constexpr unsigned controlBit = 2;
constexpr unsigned optionBit = 4;
constexpr unsigned commandBit = 8;

ModifierFlags flagsOf(unsigned bits)
{
    ModifierFlags flags;
    if (bits & shiftBit)
        flags = flags | modifier::shift;
    if (bits & controlBit)
        flags = flags | modifier::control;
    if (bits & optionBit)
        flags = flags | modifier::option;
    if (bits & commandBit)
        flags = flags | modifier::command;
    return flags;
}

/// Combinations that act whatever the key is.
std::map<unsigned, ModifierAction> const actionsOfAnyKey {
    { commandBit | optionBit, finderInfo },
    { commandBit | optionBit | shiftBit, quickLook },
    { commandBit | optionBit | controlBit, trash },
    { commandBit, reveal },
};

/// Keys that act when no modifier key is held.
std::map<std::string, ModifierAction> const actionsOfPlainKeys {
    { "r", reveal },
    { "i", finderInfo },
    { "p", quickLook },
    { "\x7F", trash },
    { "\x08", trash },
    { "g", revealAlternate },
    { "q", quickLookAlternate },
    { "\x09", infoWindow },
};

std::vector<std::string> allKeys()
{
    std::vector<std::string> keys { "", "rr", "ri", "r\n", "é", "\xFF", "\xEF\x9C\x80", "delete", "tab" };
    for (int byte = 0; byte < 128; ++byte)
        keys.emplace_back(1, static_cast<char>(byte));
    return keys;
}

std::optional<ModifierAction> expectedAction(unsigned bits, std::string const& key)
{
    if (auto const any = actionsOfAnyKey.find(bits); any != actionsOfAnyKey.end())
        return any->second;
    auto const plain = actionsOfPlainKeys.find(key);
    return bits == 0 && plain != actionsOfPlainKeys.end() ? std::optional(plain->second) : std::nullopt;
}

TEST(ActionKeysTest, EveryKeyWithEveryCombinationOfModifiersHasItsAction)
{
    for (unsigned bits = 0; bits < 16; ++bits) {
        for (auto const& key : allKeys()) {
            EXPECT_EQ(modifierActionFor({ EventType::keyDown, flagsOf(bits), key }), expectedAction(bits, key))
                << "modifiers " << bits << ", key " << testing::PrintToString(key);
        }
    }
}

TEST(ActionKeysTest, CapsLockAndFunctionMakeNoDifference)
{
    for (auto const extra : { modifier::capsLock, modifier::function, ModifierFlags(0x1), ModifierFlags(0x200000) }) {
        for (unsigned bits = 0; bits < 16; ++bits) {
            for (auto const& key : allKeys()) {
                EXPECT_EQ(
                    modifierActionFor({ EventType::keyDown, flagsOf(bits) | extra, key }), expectedAction(bits, key));
            }
        }
    }
}

TEST(ActionKeysTest, ActionsHaveTheirNumbers)
{
    std::vector<ModifierAction> const actions { trash, forceQuit, reveal, finderInfo, quickLook, revealAlternate,
        quickLookAlternate, infoWindow };
    for (std::size_t number = 0; number < actions.size(); ++number)
        EXPECT_EQ(static_cast<std::size_t>(actions[number]), number);
}

}
}
