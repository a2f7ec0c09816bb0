#include "Freedesktop/Interface/Symbols.h"

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

#include <algorithm>
#include <cmath>

// The macro declares a function and cannot stand in a namespace.
static void registerDrawings()
{
    Q_INIT_RESOURCE(symbols);
}

namespace marrowick {

namespace {

constexpr int grid = 16;

/// Black drawing on nothing; null when there is none.
QImage drawing(QString const& name, QSize size)
{
    registerDrawings();
    QString const path = QLatin1String(":/marrowick/symbols/") + name + QLatin1String(".svg");
    if (!QFile::exists(path))
        return {};
    QSvgRenderer renderer(path);
    int const side = std::max(1, std::min(size.width(), size.height()));
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter, QRectF(0, 0, side, side));
    return image;
}

QImage inColour(QImage image, QColor const& colour)
{
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), colour);
    return image;
}

QString cacheKey(QString const& name, QSize size, QString const& ink)
{
    return QStringLiteral("marrowick-symbol %1 %2x%3 %4").arg(name).arg(size.width()).arg(size.height()).arg(ink);
}

template<typename Draw>
QPixmap cached(QString const& key, Draw const& draw)
{
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
        pixmap = QPixmap::fromImage(draw());
        QPixmapCache::insert(key, pixmap);
    }
    return pixmap;
}

}

QPixmap symbolPixmap(QString const& name, QSize size, QColor const& colour)
{
    return cached(cacheKey(name, size, colour.name(QColor::HexArgb)), [&] {
        auto const image = drawing(name, size);
        return image.isNull() ? image : inColour(image, colour);
    });
}

QPixmap edgedSymbolPixmap(QString const& name, QSize size)
{
    return cached(cacheKey(name, size, QStringLiteral("edged")), [&] {
        auto const black = drawing(name, size);
        if (black.isNull())
            return black;
        auto const dark = inColour(black, QColor(0, 0, 0, 110));
        int const reach = std::max(1, static_cast<int>(std::lround(black.width() / double(grid) * 0.6)));

        QImage image(black.size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        for (int x = -reach; x <= reach; x += reach) {
            for (int y = -reach; y <= reach; y += reach)
                painter.drawImage(x, y, dark);
        }
        painter.drawImage(0, 0, inColour(black, QColor(250, 250, 250)));
        painter.end();
        return image;
    });
}

}
