#include "Freedesktop/Interface/Icons.h"

#include "Freedesktop/Interface/Bitmaps.h"
#include "Freedesktop/Interface/Conversions.h"
#include "Freedesktop/Interface/FileIcons.h"
#include "Freedesktop/Interface/Symbols.h"

#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>

#include <optional>

namespace marrowick {

namespace {

enum class Ink : std::uint8_t {
    palette,
    edged,
};

/// What all our engines share: they are never null, as large as asked for, and paint the pixmap that they give.
class LazyEngine : public QIconEngine {
public:
    void paint(QPainter* painter, QRect const& rect, QIcon::Mode mode, QIcon::State state) override
    {
        qreal const scale = painter->device()->devicePixelRatio();
        QSize const size = (QSizeF(rect.size()) * scale).toSize();
        QPixmap shown = scaledPixmap(size, mode, state, scale);
        shown.setDevicePixelRatio(scale);
        QSizeF const logical = QSizeF(shown.size()) / scale;
        QPointF const corner(
            rect.x() + (rect.width() - logical.width()) / 2, rect.y() + (rect.height() - logical.height()) / 2);
        painter->drawPixmap(corner, shown);
    }

    QPixmap pixmap(QSize const& size, QIcon::Mode mode, QIcon::State state) override
    {
        return scaledPixmap(size, mode, state, 1);
    }

    QSize actualSize(QSize const& size, QIcon::Mode, QIcon::State) override
    {
        int const side = std::min(size.width(), size.height());
        return { side, side };
    }

    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override
    {
        return { { 16, 16 }, { 22, 22 }, { 24, 24 }, { 32, 32 }, { 48, 48 }, { 64, 64 } };
    }
};

QColor textColour(QIcon::Mode mode)
{
    auto const palette = QApplication::palette("QMenu");
    switch (mode) {
    case QIcon::Disabled:
        return palette.color(QPalette::Disabled, QPalette::Text);
    case QIcon::Active:
    case QIcon::Selected:
        return palette.color(QPalette::Active, QPalette::HighlightedText);
    case QIcon::Normal:
        break;
    }
    return palette.color(QPalette::Active, QPalette::Text);
}

class SymbolEngine : public LazyEngine {
public:
    SymbolEngine(QString name, Ink ink)
        : name_(std::move(name))
        , ink_(ink)
    {
    }

    QPixmap scaledPixmap(QSize const& size, QIcon::Mode mode, QIcon::State, qreal) override
    {
        switch (ink_) {
        case Ink::edged:
            return edgedSymbolPixmap(name_, size);
        case Ink::palette:
            break;
        }
        return symbolPixmap(name_, size, textColour(mode));
    }

    QIconEngine* clone() const override { return new SymbolEngine(*this); }
    QString key() const override { return QStringLiteral("marrowick-symbol"); }

private:
    QString name_;
    Ink ink_;
};

QString symbolFor(FileShape shape)
{
    switch (shape) {
    case FileShape::document:
        break;
    case FileShape::folder:
        return QStringLiteral("folder");
    case FileShape::application:
        return QStringLiteral("app");
    }
    return QStringLiteral("doc");
}

class FileIconEngine : public LazyEngine {
public:
    explicit FileIconEngine(FileURL url)
        : url_(std::move(url))
    {
    }

    QPixmap scaledPixmap(QSize const& size, QIcon::Mode mode, QIcon::State state, qreal scale) override
    {
        if (!found_)
            found_ = findFileIcon(url_);
        if (found_->icon.isNull())
            return symbolPixmap(symbolFor(found_->shape), size, textColour(mode));
        return found_->icon.pixmap((QSizeF(size) / scale).toSize(), scale, mode, state);
    }

    QIconEngine* clone() const override { return new FileIconEngine(*this); }
    QString key() const override { return QStringLiteral("marrowick-file"); }

private:
    FileURL url_;
    std::optional<FoundFileIcon> found_;
};

/// Draws a picture that is there already, scaled down to fit and never up.
class BitmapEngine : public LazyEngine {
public:
    explicit BitmapEngine(Bitmap bitmap)
        : bitmap_(std::move(bitmap))
    {
    }

    QPixmap scaledPixmap(QSize const& size, QIcon::Mode mode, QIcon::State state, qreal scale) override
    {
        if (icon_.isNull()) {
            if (auto const image = imageFrom(bitmap_); !image.isNull())
                icon_ = QIcon(QPixmap::fromImage(image));
            else
                icon_ = QIcon(new SymbolEngine(QStringLiteral("app"), Ink::palette));
        }
        return icon_.pixmap((QSizeF(size) / scale).toSize(), scale, mode, state);
    }

    QIconEngine* clone() const override { return new BitmapEngine(*this); }
    QString key() const override { return QStringLiteral("marrowick-bitmap"); }

private:
    Bitmap bitmap_;
    QIcon icon_;
};

/// Another icon, faded.
class FadedEngine : public LazyEngine {
public:
    FadedEngine(QIcon icon, double opacity)
        : icon_(std::move(icon))
        , opacity_(opacity)
    {
    }

    QPixmap scaledPixmap(QSize const& size, QIcon::Mode mode, QIcon::State state, qreal scale) override
    {
        QPixmap const shown = icon_.pixmap((QSizeF(size) / scale).toSize(), scale, mode, state);
        QPixmap faded(shown.size());
        faded.setDevicePixelRatio(shown.devicePixelRatio());
        faded.fill(Qt::transparent);
        QPainter painter(&faded);
        painter.setOpacity(opacity_);
        painter.drawPixmap(0, 0, shown);
        return faded;
    }

    QIconEngine* clone() const override { return new FadedEngine(*this); }
    QString key() const override { return QStringLiteral("marrowick-faded"); }

private:
    QIcon icon_;
    double opacity_;
};

QIcon faded(QIcon icon, double opacity)
{
    return opacity >= 1 ? icon : QIcon(new FadedEngine(std::move(icon), opacity));
}

struct MakeIcon {
    Ink ink;

    QIcon operator()(SystemSymbol const& symbol) const { return QIcon(new SymbolEngine(exactText(symbol.name), ink)); }
    QIcon operator()(FileIcon const& file) const { return QIcon(new FileIconEngine(file.url)); }
    QIcon operator()(Bitmap const& bitmap) const { return QIcon(new BitmapEngine(bitmap)); }
};

}

QIcon iconFor(Image const& image)
{
    return faded(std::visit(MakeIcon { Ink::palette }, image.source), image.opacity);
}

void prepareWindowIcon()
{
    QApplication::setWindowIcon(panelIconFor(Image::systemSymbol("arrowtriangle.down.square")));
}

QIcon panelIconFor(Image const& image)
{
    return faded(std::visit(MakeIcon { Ink::edged }, image.source), image.opacity);
}

}
