#pragma once

#include "Freedesktop/Interface/Pressable.h"
#include "Platform/FileURL.h"

#include <QElapsedTimer>
#include <QImage>
#include <QPoint>
#include <QWidget>

#include <functional>

namespace marrowick {

/// The picture of a file, from which the file can be dragged away.
class DraggableIcon final : public QWidget, public Pressable {
public:
    /// `pressed` hears of every press of the mouse, with its number among those that follow each other quickly in one
    /// place.
    DraggableIcon(int side, std::function<void(int clickCount)> pressed, QWidget& parent);

    void setImage(QImage image);

    /// Lets the user drag the picture away as the file; returns when that has ended.
    void drag(FileURL const& url);

    /// The same as a double click.
    void press() override { pressed_(2); }
    QAccessible::Role role() const override { return QAccessible::Graphic; }

    QSize sizeHint() const override;

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void pressedAt(QPoint position);
    /// The picture at the size in which it is shown, and where.
    QPixmap shownPixmap() const;
    QPoint cornerOf(QPixmap const& pixmap) const;

    int side_;
    std::function<void(int clickCount)> pressed_;
    QImage image_;
    int clickCount_ = 0;
    QPoint lastPress_;
    QElapsedTimer sinceLastPress_;
};

}
