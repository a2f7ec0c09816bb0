#pragma once

#include "Platform/Image.h"

#include <xcb/xcb.h>

#include <QAbstractButton>
#include <QAbstractNativeEventFilter>
#include <QPixmap>

#include <functional>
#include <optional>

namespace marrowick {

/// The icon in a status area of the X11 kind: a window that the area's manager takes into its own.
class TrayIconWindow : public QAbstractButton, private QAbstractNativeEventFilter {
public:
    /// `pressed` is called at the press of any mouse button, with the modifiers held at that moment; `clicked` is
    /// emitted for presses by accessibility clients only.
    TrayIconWindow(
        xcb_window_t manager, Image image, std::function<void(Qt::MouseButton, Qt::KeyboardModifiers)> pressed);
    ~TrayIconWindow() override;

    void setImage(Image image);

    /// Where the icon is on the virtual desktop; absent until the manager has taken it.
    std::optional<QRect> globalGeometry() const;

    QSize sizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    bool nativeEventFilter(QByteArray const& eventType, void* message, qintptr* result) override;
    void requestDock();
    void reparented(xcb_window_t parent);
    QPixmap grabbedBackground();

    xcb_window_t manager_;
    xcb_window_t root_;
    Image image_;
    std::function<void(Qt::MouseButton, Qt::KeyboardModifiers)> pressed_;
    bool isEmbedded_ = false;
    QPixmap background_;
};

}
