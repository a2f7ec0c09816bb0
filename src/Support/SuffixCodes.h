#pragma once

#include <cstdint>
#include <initializer_list>

namespace marrowick {

/// The set of codes that the suffixes of an item's name carry.
class SuffixCodes {
public:
    constexpr SuffixCodes() = default;
    constexpr explicit SuffixCodes(std::int64_t rawValue)
        : rawValue(rawValue)
    {
    }
    constexpr SuffixCodes(std::initializer_list<SuffixCodes> members)
    {
        for (auto const member : members)
            insert(member);
    }

    std::int64_t rawValue = 0;

    constexpr bool isEmpty() const { return rawValue == 0; }
    constexpr bool contains(SuffixCodes other) const { return (rawValue & other.rawValue) == other.rawValue; }
    constexpr void insert(SuffixCodes other) { rawValue |= other.rawValue; }
    constexpr void remove(SuffixCodes other) { rawValue &= ~other.rawValue; }

    friend constexpr SuffixCodes operator|(SuffixCodes a, SuffixCodes b)
    {
        return SuffixCodes(a.rawValue | b.rawValue);
    }
    friend constexpr SuffixCodes operator&(SuffixCodes a, SuffixCodes b)
    {
        return SuffixCodes(a.rawValue & b.rawValue);
    }
    friend constexpr bool operator==(SuffixCodes, SuffixCodes) = default;

    /// A folder is a plain entry that opens it, not a submenu.
    static SuffixCodes const noSubmenu;
    /// The entry has no icon.
    static SuffixCodes const noIcon;
    /// The entry is one of the generated submenus.
    static SuffixCodes const allApps;
    static SuffixCodes const desktop;
    static SuffixCodes const processes;
    static SuffixCodes const prefPanes;
    static SuffixCodes const recentItems;
    /// The entry holds templates, and is hidden while files are selected.
    static SuffixCodes const copyTemplate;
    /// A folder's contents stand in its place.
    static SuffixCodes const inlineFolder;
    /// Shown only while files are selected.
    static SuffixCodes const needsFinderSelection;
    /// Shown only while no files are selected.
    static SuffixCodes const needsNoFinderSelection;
    /// Shown only while text is selected.
    static SuffixCodes const needsTextSelection;
    /// Taken off the title and kept, without any effect.
    static SuffixCodes const reserved;
    /// The entry is a line.
    static SuffixCodes const divider;
};

inline constexpr SuffixCodes SuffixCodes::noSubmenu(0x1);
inline constexpr SuffixCodes SuffixCodes::noIcon(0x2);
inline constexpr SuffixCodes SuffixCodes::allApps(0x4);
inline constexpr SuffixCodes SuffixCodes::desktop(0x8);
inline constexpr SuffixCodes SuffixCodes::processes(0x10);
inline constexpr SuffixCodes SuffixCodes::prefPanes(0x20);
inline constexpr SuffixCodes SuffixCodes::recentItems(0x40);
inline constexpr SuffixCodes SuffixCodes::copyTemplate(0x80);
inline constexpr SuffixCodes SuffixCodes::inlineFolder(0x100);
inline constexpr SuffixCodes SuffixCodes::needsFinderSelection(0x200);
inline constexpr SuffixCodes SuffixCodes::needsNoFinderSelection(0x400);
inline constexpr SuffixCodes SuffixCodes::needsTextSelection(0x800);
inline constexpr SuffixCodes SuffixCodes::reserved(0x1000);
inline constexpr SuffixCodes SuffixCodes::divider(0x2000);

}
