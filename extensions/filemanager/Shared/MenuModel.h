#pragma once

#include "Support/Snapshot.h"

#include <string>
#include <string_view>
#include <vector>

namespace marrowick::companion {

/// One entry of the context menu. Either it has entries of its own, or choosing it asks for a transfer.
struct MenuEntry {
    /// Letters, digits, "-" and "_" alone; no other entry has it, and the entry keeps it each time the menu is made.
    std::string name;
    /// One line of UTF-8.
    std::string label;
    /// What a request calls the operation, and its destination.
    std::string op;
    std::string dest;
    std::vector<MenuEntry> entries;

    friend bool operator==(MenuEntry const&, MenuEntry const&) = default;
};

using MenuEntries = std::vector<MenuEntry>;

/// The entries for selected items: for each operation a tree of the destinations, up to three levels below a root; none
/// where there are no destinations. A folder that holds others is the first entry of its own submenu.
MenuEntries menuFor(Snapshot const& snapshot);

/// `text` on one line, with what cannot be seen, or would turn what is beside it, made visible.
std::string lineOf(std::string_view text);

/// `label` with what a toolkit takes for the mark of a mnemonic doubled.
std::string withoutMnemonics(std::string_view label);

}
