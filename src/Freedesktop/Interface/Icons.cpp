#include "Freedesktop/Interface/Icons.h"

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

struct MakeIcon {
    Ink ink;

    QIcon operator()(SystemSymbol const& symbol) const { return QIcon(new SymbolEngine(exactText(symbol.name), ink)); }
    QIcon operator()(FileIcon const& file) const { return QIcon(new FileIconEngine(file.url)); }
};

}

QIcon iconFor(Image const& image)
{
    return std::visit(MakeIcon { Ink::palette }, image.source);
}

QIcon panelIconFor(Image const& image)
{
    return std::visit(MakeIcon { Ink::edged }, image.source);
}

}
