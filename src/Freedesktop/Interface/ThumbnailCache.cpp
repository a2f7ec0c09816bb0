#include "Freedesktop/Interface/ThumbnailCache.h"

#include "Freedesktop/Interface/Pictures.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QImageReader>

#include <glib.h>

#include <algorithm>
#include <array>
#include <utility>

namespace marrowick {

namespace {

constexpr std::array knownFlavors {
    ThumbnailFlavor { "normal", 128 },
    ThumbnailFlavor { "large", 256 },
    ThumbnailFlavor { "x-large", 512 },
    ThumbnailFlavor { "xx-large", 1024 },
};

/// More than an uncompressed picture of the largest flavor takes.
constexpr qsizetype largestThumbnail = 8 * 1024 * 1024;

auto preferred(int pixels)
{
    auto const isSufficient = [pixels](ThumbnailFlavor const& flavor) { return flavor.side >= pixels; };
    auto const found = std::find_if(knownFlavors.begin(), knownFlavors.end(), isSufficient);
    return found == knownFlavors.end() ? std::prev(found) : found;
}

bool isOf(QImage const& image, ThumbnailSource const& source)
{
    bool isNumber = false;
    auto const time = image.text(QStringLiteral("Thumb::MTime")).toLongLong(&isNumber);
    return isNumber && time == source.modificationTime
        && image.text(QStringLiteral("Thumb::URI")).toUtf8() == source.uri;
}

}

ThumbnailFlavor flavorFor(int pixels)
{
    return *preferred(pixels);
}

std::vector<ThumbnailFlavor> flavorsByPreference(int pixels)
{
    auto const first = preferred(pixels);
    std::vector<ThumbnailFlavor> flavors(first, knownFlavors.end());
    flavors.insert(flavors.end(), std::reverse_iterator(first), knownFlavors.rend());
    return flavors;
}

ThumbnailCache::ThumbnailCache()
    : ThumbnailCache(QByteArray(g_get_user_cache_dir()) + "/thumbnails")
{
}

ThumbnailCache::ThumbnailCache(QByteArray folder)
    : folder_(std::move(folder))
{
}

QByteArray ThumbnailCache::pathOf(QByteArray const& uri, ThumbnailFlavor flavor) const
{
    auto const name = QCryptographicHash::hash(uri, QCryptographicHash::Md5).toHex();
    return folder_ + '/' + flavor.name + '/' + name + ".png";
}

QImage ThumbnailCache::find(ThumbnailSource const& source, int pixels, Flavors flavors) const
{
    auto const least = flavorFor(pixels).side;
    for (auto const& flavor : flavorsByPreference(pixels)) {
        if (flavors == Flavors::sufficient && flavor.side < least)
            break;
        if (auto image = read(source, flavor); !image.isNull())
            return image;
    }
    return {};
}

QImage ThumbnailCache::read(ThumbnailSource const& source, ThumbnailFlavor flavor) const
{
    auto content = readRegularFile(pathOf(source.uri, flavor).constData(), largestThumbnail);
    if (!content)
        return {};
    QBuffer buffer(&*content);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, "png");
    auto const size = reader.size();
    if (size.isEmpty() || std::max(size.width(), size.height()) > flavor.side)
        return {};
    // The reader itself takes the names of these texts apart at their colons.
    auto image = reader.read();
    return isOf(image, source) ? image : QImage();
}

}
