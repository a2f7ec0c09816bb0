#pragma once

#include "Platform/Geometry.h"

#include <vector>

namespace marrowick {

/// What a desktop knows of one screen.
struct Screen {
    Rect frame;
    /// The part of `frame` that panels leave free.
    Rect workArea;
    friend bool operator==(Screen const&, Screen const&) = default;
};

/// Where the top left corner of a menu of `menuSize` goes that belongs to `anchor`: the status icon, or an empty
/// rectangle at the pointer where the icon's place is not known.
///
/// The menu stands beside the anchor on the side away from the screen edge that the anchor is nearest to (below an icon
/// of a panel at the top, above one at the bottom, right or left of one in a vertical panel), aligned with the anchor's
/// near corner, and is then moved the least way that puts it inside the work area of the screen that holds the anchor's
/// centre. A menu larger than the work area starts at the work area's top left corner.
Point placeMenu(Rect anchor, Size menuSize, std::vector<Screen> const& screens);

/// Where the top left corner of a submenu goes that would stand at `proposed`. `parent` is the menu that it opens from and
/// `grandparent` the one before.
///
/// Menus that have turned to one side go on to that side where `workArea` has room, so that they do not cover those that
/// led to them.
Point placeSubmenu(Rect proposed, Rect parent, Rect grandparent, Rect workArea);

}
