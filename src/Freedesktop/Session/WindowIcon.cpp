#include "Freedesktop/Session/WindowIcon.h"

#include <algorithm>
#include <cstddef>

namespace marrowick {

namespace {

constexpr std::uint32_t largestSide = 1024;
constexpr std::uint32_t maximumIconBytes = 1024 * 1024;
/// Twice the side of a menu's icons, for dense screens.
constexpr int wantedSide = 32;

struct IconPlace {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::size_t firstPixel = 0;

    std::size_t pixelCount() const { return std::size_t { width } * height; }
    std::uint32_t side() const { return std::max(width, height); }
};

std::vector<IconPlace> iconsIn(std::vector<std::uint32_t> const& property)
{
    std::vector<IconPlace> icons;
    std::size_t position = 0;
    while (property.size() - position > 2) {
        IconPlace const icon { property[position], property[position + 1], position + 2 };
        bool const isPossible
            = icon.width > 0 && icon.height > 0 && icon.width <= largestSide && icon.height <= largestSide;
        if (!isPossible || icon.pixelCount() > property.size() - icon.firstPixel)
            break;
        icons.push_back(icon);
        position = icon.firstPixel + icon.pixelCount();
    }
    return icons;
}

}

std::optional<Bitmap> bestIcon(std::vector<std::uint32_t> const& property, int side)
{
    auto const icons = iconsIn(property);
    auto const wanted = static_cast<std::uint32_t>(std::max(side, 1));
    auto const isBetter = [&](IconPlace const& a, IconPlace const& b) {
        bool const aSuffices = a.side() >= wanted;
        bool const bSuffices = b.side() >= wanted;
        if (aSuffices != bSuffices)
            return aSuffices;
        return aSuffices ? a.side() < b.side() : a.side() > b.side();
    };
    auto const best = std::min_element(icons.begin(), icons.end(), isBetter);
    if (best == icons.end())
        return std::nullopt;
    auto const first = property.begin() + static_cast<std::ptrdiff_t>(best->firstPixel);
    auto const last = first + static_cast<std::ptrdiff_t>(best->pixelCount());
    return Bitmap { static_cast<int>(best->width), static_cast<int>(best->height),
        std::make_shared<std::vector<std::uint32_t> const>(first, last) };
}

std::optional<Bitmap> iconOfWindows(std::vector<ClientWindow> const& windows, XConnection& connection)
{
    for (auto const& window : windows) {
        auto const request
            = connection.request(window.id, connection.atom(XAtom::netWMIcon), XCB_ATOM_CARDINAL, maximumIconBytes);
        if (auto icon = bestIcon(connection.collectNumbers(request), wantedSide))
            return icon;
    }
    return std::nullopt;
}

}
