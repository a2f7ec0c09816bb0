#include "Freedesktop/Session/WindowIcon.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>

namespace marrowick {

namespace {

constexpr std::uint32_t largestSide = 1024;
/// Holds the sizes of a menu, which usually come first.
constexpr std::uint32_t usualIconBytes = 8 * 1024;
/// Holds one of the largest and its sizes.
constexpr std::uint32_t maximumIconBytes = (largestSide * largestSide + 2) * 4;
/// An application whose first windows bring no picture has none.
constexpr std::size_t mostWindowsAsked = 4;
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

XConnection::Request requestIcon(ClientWindow const& window, std::uint32_t maximumBytes, XConnection& connection)
{
    return connection.request(window.id, connection.atom(XAtom::netWMIcon), XCB_ATOM_CARDINAL, maximumBytes);
}

/// `beginning` is what the window's property begins with. The rest is asked for only where it is needed.
std::optional<Bitmap> iconOfWindow(
    ClientWindow const& window, std::vector<std::uint32_t> const& beginning, XConnection& connection)
{
    auto icon = bestIcon(beginning, wantedSide);
    bool const isWhole = beginning.size() * sizeof(std::uint32_t) < usualIconBytes;
    if (isWhole || (icon && std::max(icon->width, icon->height) >= wantedSide))
        return icon;
    return bestIcon(connection.collectNumbers(requestIcon(window, maximumIconBytes, connection)), wantedSide);
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

std::vector<std::optional<Bitmap>> iconsOfWindows(std::vector<std::vector<ClientWindow> const*> const& lists,
    XConnection& connection, std::function<void()> const& meanwhile)
{
    std::vector<XConnection::Request> requests;
    for (auto const* const windows : lists) {
        auto const count = std::min(windows->size(), mostWindowsAsked);
        for (std::size_t index = 0; index < count; ++index)
            requests.push_back(requestIcon((*windows)[index], usualIconBytes, connection));
    }
    if (meanwhile) {
        connection.sendRequests();
        meanwhile();
    }
    std::vector<std::optional<Bitmap>> icons;
    auto request = requests.begin();
    for (auto const* const windows : lists) {
        std::optional<Bitmap> icon;
        auto const count = std::min(windows->size(), mostWindowsAsked);
        for (std::size_t index = 0; index < count; ++index) {
            auto const property = connection.collectNumbers(*request++);
            if (!icon)
                icon = iconOfWindow((*windows)[index], property, connection);
        }
        icons.push_back(std::move(icon));
    }
    return icons;
}

}
