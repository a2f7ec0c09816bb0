#include "Platform/MenuPlacement.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>

namespace marrowick {

namespace {

enum class Edge : std::uint8_t {
    top,
    bottom,
    left,
    right,
};

std::int64_t distanceBetween(Point point, Rect const& rect)
{
    std::int64_t const dx = std::max({ rect.x - point.x, 0, point.x - (rect.right() - 1) });
    std::int64_t const dy = std::max({ rect.y - point.y, 0, point.y - (rect.bottom() - 1) });
    return dx * dx + dy * dy;
}

Edge nearestEdge(Rect const& anchor, Rect const& frame)
{
    struct Candidate {
        Edge edge;
        int distance;
    };
    std::array const candidates {
        Candidate { Edge::top, std::abs(anchor.y - frame.y) },
        Candidate { Edge::bottom, std::abs(frame.bottom() - anchor.bottom()) },
        Candidate { Edge::left, std::abs(anchor.x - frame.x) },
        Candidate { Edge::right, std::abs(frame.right() - anchor.right()) },
    };
    return std::min_element(candidates.begin(), candidates.end(), [](Candidate const& a, Candidate const& b) {
        return a.distance < b.distance;
    })->edge;
}

/// The panel that holds the anchor tells better than distances do on which side the menu stands: an icon at the end of
/// a horizontal panel is as near to a vertical edge as to its own.
Edge panelEdge(Rect const& anchor, Screen const& screen)
{
    auto const& area = screen.workArea;
    if (anchor.width > 0 && anchor.height > 0) {
        if (anchor.bottom() <= area.y)
            return Edge::top;
        if (anchor.y >= area.bottom())
            return Edge::bottom;
        if (anchor.right() <= area.x)
            return Edge::left;
        if (anchor.x >= area.right())
            return Edge::right;
    }
    return nearestEdge(anchor, screen.frame);
}

int confined(int start, int length, int areaStart, int areaLength)
{
    return std::max(areaStart, std::min(start, areaStart + areaLength - length));
}

}

Point placeMenu(Rect anchor, Size menuSize, std::vector<Screen> const& screens)
{
    Point const centre { anchor.x + anchor.width / 2, anchor.y + anchor.height / 2 };
    auto const screen = std::min_element(screens.begin(), screens.end(), [&](Screen const& a, Screen const& b) {
        return distanceBetween(centre, a.frame) < distanceBetween(centre, b.frame);
    });
    if (screen == screens.end())
        return { anchor.x, anchor.bottom() };

    Point origin { anchor.x, anchor.y };
    switch (panelEdge(anchor, *screen)) {
    case Edge::top:
        origin.y = anchor.bottom();
        break;
    case Edge::bottom:
        origin.y = anchor.y - menuSize.height;
        break;
    case Edge::left:
        origin.x = anchor.right();
        break;
    case Edge::right:
        origin.x = anchor.x - menuSize.width;
        break;
    }

    auto const& area = screen->workArea;
    return { confined(origin.x, menuSize.width, area.x, area.width),
        confined(origin.y, menuSize.height, area.y, area.height) };
}

Point placeSubmenu(Rect proposed, Rect parent, Rect grandparent, Rect workArea)
{
    bool const goesLeft = parent.x < grandparent.x;
    if (goesLeft == (proposed.x < parent.x))
        return { proposed.x, proposed.y };
    // Neighbours overlap by their frames.
    int const overlap = goesLeft ? parent.right() - grandparent.x : grandparent.right() - parent.x;
    int const x = goesLeft ? parent.x + overlap - proposed.width : parent.right() - overlap;
    bool const hasRoom = x >= workArea.x && x + proposed.width <= workArea.right();
    return { hasRoom ? x : proposed.x, proposed.y };
}

}
