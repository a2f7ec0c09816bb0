#include "Freedesktop/Interface/DraggableIcon.h"

#include "Freedesktop/GLibOwners.h"

#include <QApplication>
#include <QDrag>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>

#include <algorithm>
#include <utility>

namespace marrowick {

namespace {

/// Some file managers take the action that they like best among those that are offered, whatever keys are down.
Qt::DropActions offeredActions(Qt::KeyboardModifiers modifiers)
{
    bool const copies = modifiers & Qt::ControlModifier;
    bool const moves = modifiers & Qt::ShiftModifier;
    if (copies && moves)
        return Qt::LinkAction;
    if (copies)
        return Qt::CopyAction;
    if (moves)
        return Qt::MoveAction;
    return Qt::CopyAction | Qt::LinkAction | Qt::MoveAction;
}

}

DraggableIcon::DraggableIcon(int side, std::function<void(int clickCount)> pressed, QWidget& parent)
    : QWidget(&parent)
    , side_(side)
    , pressed_(std::move(pressed))
{
    setFixedSize(side, side);
    setFocusPolicy(Qt::TabFocus);
}

void DraggableIcon::setImage(QImage image)
{
    image_ = std::move(image);
    update();
}

QSize DraggableIcon::sizeHint() const
{
    return { side_, side_ };
}

void DraggableIcon::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        pressedAt(event->globalPosition().toPoint());
}

void DraggableIcon::mouseDoubleClickEvent(QMouseEvent* event)
{
    // The toolkit knows no third press in a row, and none that follows a drag.
    mousePressEvent(event);
}

void DraggableIcon::pressedAt(QPoint position)
{
    bool const follows = sinceLastPress_.isValid() && sinceLastPress_.elapsed() < QApplication::doubleClickInterval()
        && (position - lastPress_).manhattanLength() < QApplication::startDragDistance();
    clickCount_ = follows ? clickCount_ + 1 : 1;
    lastPress_ = position;
    sinceLastPress_.start();
    pressed_(clickCount_);
}

void DraggableIcon::keyPressEvent(QKeyEvent* event)
{
    if (isPressKey(event->key()) && !event->isAutoRepeat())
        press();
    else
        QWidget::keyPressEvent(event);
}

void DraggableIcon::drag(FileURL const& url)
{
    GStringOwner const uri(g_filename_to_uri(url.path().c_str(), nullptr, nullptr));
    if (!uri)
        return;
    auto* const data = new QMimeData;
    data->setData(QStringLiteral("text/uri-list"), QByteArray(uri.get()) + "\r\n");
    auto* const drag = new QDrag(this);
    drag->setMimeData(data);
    if (auto const pixmap = shownPixmap(); !pixmap.isNull()) {
        drag->setPixmap(pixmap);
        drag->setHotSpot(mapFromGlobal(lastPress_) - cornerOf(pixmap));
    }
    drag->exec(offeredActions(QGuiApplication::queryKeyboardModifiers()), Qt::CopyAction);
}

QPixmap DraggableIcon::shownPixmap() const
{
    if (image_.isNull())
        return {};
    qreal const scale = devicePixelRatioF();
    auto const most = static_cast<int>(side_ * scale);
    bool const fits = std::max(image_.width(), image_.height()) <= most;
    auto pixmap
        = QPixmap::fromImage(fits ? image_ : image_.scaled(most, most, Qt::KeepAspectRatio, Qt::SmoothTransformation));
    pixmap.setDevicePixelRatio(scale);
    return pixmap;
}

QPoint DraggableIcon::cornerOf(QPixmap const& pixmap) const
{
    auto const size = pixmap.deviceIndependentSize();
    return QPointF((width() - size.width()) / 2, (height() - size.height()) / 2).toPoint();
}

void DraggableIcon::paintEvent(QPaintEvent*)
{
    if (auto const pixmap = shownPixmap(); !pixmap.isNull())
        QPainter(this).drawPixmap(cornerOf(pixmap), pixmap);
    drawFocusFrame(*this);
}

}
