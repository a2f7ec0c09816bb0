#include "Freedesktop/Interface/Bitmaps.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace marrowick {

QImage imageFrom(Bitmap const& bitmap)
{
    auto const count = bitmap.pixels ? bitmap.pixels->size() : 0;
    if (bitmap.width <= 0 || bitmap.height <= 0
        || count < static_cast<std::size_t>(bitmap.width) * static_cast<std::size_t>(bitmap.height))
        return {};
    QImage const shared(reinterpret_cast<uchar const*>(bitmap.pixels->data()), bitmap.width, bitmap.height,
        bitmap.width * static_cast<int>(sizeof(std::uint32_t)), QImage::Format_ARGB32);
    return shared.copy();
}

Bitmap bitmapFrom(QImage const& image)
{
    QImage const rows = image.convertToFormat(QImage::Format_ARGB32);
    auto pixels = std::make_shared<std::vector<std::uint32_t>>();
    auto const width = static_cast<std::size_t>(std::max(rows.width(), 0));
    pixels->reserve(width * static_cast<std::size_t>(std::max(rows.height(), 0)));
    for (int y = 0; y < rows.height(); ++y) {
        auto const* const row = reinterpret_cast<std::uint32_t const*>(rows.constScanLine(y));
        pixels->insert(pixels->end(), row, row + width);
    }
    return { rows.width(), rows.height(), std::move(pixels) };
}

}
