#include "Shared/MenuModel.h"

#include "Shared/GLib.h"

#include <array>
#include <map>

namespace marrowick::companion {

namespace {

struct Operation {
    std::string_view op;
    std::string_view label;
};

constexpr std::array operations {
    Operation { "ask", "Put Into…" },
    Operation { "move", "Move To" },
    Operation { "copy", "Copy To" },
    Operation { "alias", "Alias To" },
};

constexpr int deepestLevel = 3;

/// `path` in the characters that every file manager takes in a name; different for different paths.
std::string encoded(std::string_view path)
{
    constexpr std::string_view digits = "0123456789abcdef";
    std::string result;
    result.reserve(path.size() * 2);
    for (char const character : path) {
        if (g_ascii_isalnum(character)) {
            result += character;
            continue;
        }
        auto const byte = static_cast<unsigned char>(character);
        result += '_';
        result += digits[byte >> 4];
        result += digits[byte & 0xF];
    }
    return result;
}

/// The tree of one operation.
class Tree {
public:
    explicit Tree(Operation const& operation)
        : op_(operation.op)
    {
    }

    MenuEntry entryOf(SnapshotNode const& node, int level = 0)
    {
        auto const name = nameFor(node.path);
        auto label = lineOf(node.name);
        MenuEntry folder { name, label, op_, std::string(node.path), {} };
        if (node.children.empty() || level == deepestLevel)
            return folder;
        folder.label = "“" + label + "”";
        MenuEntry submenu { name + "-menu", std::move(label), {}, {}, {} };
        submenu.entries.reserve(node.children.size() + 1);
        submenu.entries.push_back(std::move(folder));
        for (auto const& child : node.children)
            submenu.entries.push_back(entryOf(child, level + 1));
        return submenu;
    }

private:
    /// A folder may be in the menu several times, as itself and through aliases.
    std::string nameFor(std::string_view path)
    {
        auto const count = ++timesSeen_[std::string(path)];
        auto name = "Marrowick-" + op_ + "-" + encoded(path);
        return count > 1 ? name + "-" + std::to_string(count) : name;
    }

    std::string op_;
    std::map<std::string, int> timesSeen_;
};

/// What stands for a character that cannot be seen, or that turns the ones beside it; 0 for all others.
gunichar standIn(gunichar character)
{
    constexpr gunichar pictures = 0x2400;
    constexpr gunichar newlinePicture = 0x2424;
    constexpr gunichar replacement = 0xFFFD;
    constexpr gunichar nothing = 0x200B;
    if (character < 0x20)
        return pictures + character;
    if (character == 0x7F)
        return pictures + 0x21;
    if (character == 0x2028 || character == 0x2029)
        return newlinePicture;
    // These marks turn nothing but the blank beside them.
    if (character == 0x061C || character == 0x200E || character == 0x200F)
        return nothing;
    bool const isControl = character >= 0x80 && character <= 0x9F;
    bool const turns = (character >= 0x202A && character <= 0x202E) || (character >= 0x2066 && character <= 0x2069);
    return isControl || turns ? replacement : 0;
}

}

MenuEntries menuFor(Snapshot const& snapshot)
{
    MenuEntries menu;
    if (snapshot.roots.empty())
        return menu;
    for (auto const& operation : operations) {
        Tree tree(operation);
        MenuEntry entry { "Marrowick-" + std::string(operation.op), std::string(operation.label), {}, {}, {} };
        entry.entries.reserve(snapshot.roots.size());
        for (auto const& root : snapshot.roots)
            entry.entries.push_back(tree.entryOf(root));
        menu.push_back(std::move(entry));
    }
    return menu;
}

std::string lineOf(std::string_view text)
{
    auto const valid = taken(g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())));
    std::string line;
    line.reserve(valid.size());
    char const* next = nullptr;
    for (char const* at = valid.c_str(); *at != '\0'; at = next) {
        next = g_utf8_next_char(at);
        auto const instead = standIn(g_utf8_get_char(at));
        if (instead == 0) {
            line.append(at, next);
            continue;
        }
        std::array<char, 6> bytes {};
        line.append(bytes.data(), static_cast<std::size_t>(g_unichar_to_utf8(instead, bytes.data())));
    }
    return line;
}

std::string withoutMnemonics(std::string_view label)
{
    std::string result;
    result.reserve(label.size());
    for (char const character : label) {
        result += character;
        if (character == '_')
            result += '_';
    }
    return result;
}

}
