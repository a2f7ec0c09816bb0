#include "Freedesktop/Preview/ImageView.h"

#include <QPainter>

#include <cmath>
#include <cstdlib>
#include <utility>

namespace marrowick {

namespace {

constexpr int checkSide = 8;

/// What shows through a picture: neither white nor black, so that both are seen on it.
void paintChecks(QPainter& painter, QRectF const& area, bool isDark)
{
    painter.fillRect(area, isDark ? QColor(0x58, 0x58, 0x58) : QColor(0xE6, 0xE6, 0xE6));
    QColor const other = isDark ? QColor(0x4A, 0x4A, 0x4A) : QColor(0xD4, 0xD4, 0xD4);
    for (int row = 0; row * checkSide < area.height(); ++row) {
        for (int column = row % 2; column * checkSide < area.width(); column += 2) {
            QRectF const check(area.x() + column * checkSide, area.y() + row * checkSide, checkSide, checkSide);
            painter.fillRect(check & area, other);
        }
    }
}

}

ImageView::ImageView(QWidget* parent)
    : QLabel(parent)
{
    setMinimumSize(1, 1);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
}

void ImageView::show(ImageContent content)
{
    content_ = std::move(content);
    fitted_ = QImage();
    // Tells accessibility clients that this is a picture; what is painted is chosen below.
    QPixmap mark(1, 1);
    mark.fill(Qt::transparent);
    setPixmap(mark);
    setAccessibleDescription(
        QStringLiteral("%1 \u00D7 %2").arg(content_.naturalSize.width()).arg(content_.naturalSize.height()));
    update();
}

void ImageView::clear()
{
    content_ = {};
    fitted_ = QImage();
    update();
}

QSize ImageView::wantedSize(QSize room) const
{
    auto size = QSizeF(content_.naturalSize) / (content_.isDrawing ? 1 : devicePixelRatioF());
    if (size.width() > room.width() || size.height() > room.height())
        size.scale(room, Qt::KeepAspectRatio);
    return { static_cast<int>(std::ceil(size.width())), static_cast<int>(std::ceil(size.height())) };
}

QImage const& ImageView::fitted(QSize pixels)
{
    if (content_.image.size() == pixels)
        return content_.image;
    if (fitted_.size() != pixels)
        fitted_ = content_.image.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return fitted_;
}

void ImageView::paintEvent(QPaintEvent*)
{
    if (content_.image.isNull())
        return;
    qreal const scale = devicePixelRatioF();
    // In pixels, so that a picture that fits is painted as it is.
    QSize const room = (QSizeF(size()) * scale).toSize();
    QSize shown = content_.isDrawing ? (QSizeF(content_.naturalSize) * scale).toSize() : content_.naturalSize;
    if (shown.width() > room.width() || shown.height() > room.height())
        shown = shown.scaled(room, Qt::KeepAspectRatio).expandedTo({ 1, 1 });
    // The decoder rounds in its own way.
    if (QSize const image = content_.image.size();
        std::abs(image.width() - shown.width()) <= 1 && std::abs(image.height() - shown.height()) <= 1)
        shown = image;

    QPoint const cornerPixel((room.width() - shown.width()) / 2, (room.height() - shown.height()) / 2);
    QPointF const corner = QPointF(cornerPixel) / scale;
    QRectF const area(corner, QSizeF(shown) / scale);
    QPainter painter(this);
    if (content_.image.hasAlphaChannel())
        paintChecks(painter, area, palette().color(QPalette::Window).lightness() < 128);
    auto image = fitted(shown);
    image.setDevicePixelRatio(scale);
    painter.drawImage(corner, image);
}

}
