#include "Freedesktop/Preview/ImageContent.h"

#include "Freedesktop/Interface/Pictures.h"

#include <QImageReader>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdint>

namespace marrowick {

namespace {

/// What decoding may take, however small the picture is to be shown. Where it is decoded as a whole, the toolkit's own
/// limit of memory is reached first; a JPEG file can keep some six bytes for each pixel.
constexpr std::int64_t mostPixels = 64LL * 1024 * 1024;
constexpr std::int64_t mostJpegPixels = 2 * mostPixels;

QSize fitted(QSize size, QSize room)
{
    if (size.width() <= room.width() && size.height() <= room.height())
        return size;
    return size.scaled(room, Qt::KeepAspectRatio).expandedTo({ 1, 1 });
}

bool isDecodable(QSize size, QByteArray const& format)
{
    return std::int64_t(size.width()) * size.height() <= (format == "jpeg" ? mostJpegPixels : mostPixels);
}

bool isTurnedSideways(QImageIOHandler::Transformations transformation)
{
    return transformation.testFlag(QImageIOHandler::TransformationRotate90);
}

}

std::variant<ImageContent, ImageFailure> readImage(QIODevice& device, QSize room)
{
    QImageReader reader(&device);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    // Whatever the file is called: the toolkit would draw it without looking whether that ends.
    if (!reader.canRead() || reader.format() == "svg" || reader.format() == "svgz")
        return ImageFailure::damaged;
    QSize const stored = reader.size();
    ImageContent content;
    if (stored.isEmpty()) {
        // Some formats tell their size only once they are decoded, within the toolkit's own limit.
        content.image = reader.read();
        content.naturalSize = content.image.size();
        if (!content.image.isNull() && fitted(content.naturalSize, room) != content.naturalSize)
            content.image = content.image.scaled(room, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    } else {
        bool const isSideways = isTurnedSideways(reader.transformation());
        QSize const target = fitted(stored, isSideways ? room.transposed() : room);
        if (!isDecodable(stored, reader.format()))
            return ImageFailure::tooLarge;
        if (target != stored)
            reader.setScaledSize(target);
        content.image = reader.read();
        content.naturalSize = isSideways ? stored.transposed() : stored;
    }
    if (content.image.isNull())
        return ImageFailure::damaged;
    return content;
}

std::variant<ImageContent, ImageFailure> drawSvg(QByteArray const& text, QSize room, double scale)
{
    if (!isHarmlessSvg(text))
        return ImageFailure::damaged;
    QSvgRenderer renderer(text);
    if (!renderer.isValid() || renderer.defaultSize().isEmpty())
        return ImageFailure::damaged;
    ImageContent content;
    content.isDrawing = true;
    content.naturalSize = renderer.defaultSize();
    // The size is the file's word; a huge one fits the room, too.
    QSizeF const wanted = QSizeF(content.naturalSize) * scale;
    QSizeF const shown = wanted.width() <= room.width() && wanted.height() <= room.height()
        ? wanted
        : wanted.scaled(QSizeF(room), Qt::KeepAspectRatio);
    content.image = QImage(shown.toSize().expandedTo({ 1, 1 }), QImage::Format_ARGB32_Premultiplied);
    content.image.fill(Qt::transparent);
    QPainter painter(&content.image);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    renderer.render(&painter, QRectF(QPointF(), QSizeF(content.image.size())));
    return content;
}

}
