#pragma once

#include "Freedesktop/Session/ClientWindows.h"
#include "Platform/Image.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace marrowick {

/// The picture among those of the property `_NET_WM_ICON` (each its width, its height, and its pixels from the top) that
/// is best drawn `side` pixels large: the smallest that is large enough, else the largest. What is cut off or makes no
/// sense is left out, and all that comes after it.
std::optional<Bitmap> bestIcon(std::vector<std::uint32_t> const& property, int side);

/// For each list of windows the icon that the first of them to have one brings along. Waits for the server's answers, for
/// all lists together where their icons are as small as usual; `meanwhile` is done while it answers.
std::vector<std::optional<Bitmap>> iconsOfWindows(std::vector<std::vector<ClientWindow> const*> const& lists,
    XConnection& connection, std::function<void()> const& meanwhile = {});

}
