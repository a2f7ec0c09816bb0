#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

#include <cstdint>
#include <vector>

namespace marrowick {

/// A size in which the desktop keeps thumbnails.
struct ThumbnailFlavor {
    /// The folder's name, and the desktop's thumbnailer's word for the size.
    char const* name;
    int side;
};

/// The smallest flavor with at least `pixels` on a side; the largest one, where none has.
ThumbnailFlavor flavorFor(int pixels);

/// All flavors, the one for `pixels` first, then the larger ones, then the smaller, each next to the one before.
std::vector<ThumbnailFlavor> flavorsByPreference(int pixels);

/// What the cache knows a file by.
struct ThumbnailSource {
    QByteArray uri;
    /// Seconds since 1970.
    std::int64_t modificationTime = 0;
};

enum class Flavors : std::uint8_t {
    /// That are large enough for what is wanted, or the largest one.
    sufficient,
    all,
};

/// The thumbnails that the programs of the user share. It is read only, from any thread.
class ThumbnailCache {
public:
    /// The cache of the user, below `XDG_CACHE_HOME`.
    ThumbnailCache();
    explicit ThumbnailCache(QByteArray folder);

    QByteArray pathOf(QByteArray const& uri, ThumbnailFlavor flavor) const;

    /// The picture for a square of `pixels`; null when there is none, or none of the file as it is.
    QImage find(ThumbnailSource const& source, int pixels, Flavors flavors) const;

private:
    QImage read(ThumbnailSource const& source, ThumbnailFlavor flavor) const;

    QByteArray folder_;
};

}
