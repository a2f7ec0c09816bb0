#include "Freedesktop/Interface/TrayIconWindow.h"

#include "Freedesktop/Interface/Conversions.h"
#include "Freedesktop/Interface/Icons.h"
#include "Freedesktop/Interface/XcbHandles.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace marrowick {

namespace {

constexpr int usualSide = 22;
constexpr std::uint8_t depthWithAlpha = 32;
constexpr std::uint32_t requestDockOpcode = 0;
constexpr std::uint8_t sentEventBit = 0x80;

/// The visual that the manager wants its icons in; zero where it does not say.
xcb_visualid_t visualOf(xcb_window_t manager)
{
    auto* connection = xcbConnection();
    auto const cookie
        = xcb_get_property(connection, 0, manager, xcbAtom("_NET_SYSTEM_TRAY_VISUAL"), XCB_ATOM_VISUALID, 0, 1);
    XcbReply<xcb_get_property_reply_t> const reply(xcb_get_property_reply(connection, cookie, nullptr));
    if (!reply || reply->format != 32 || reply->value_len < 1)
        return 0;
    return *static_cast<xcb_visualid_t const*>(xcb_get_property_value(reply.get()));
}

bool managerPaintsAlpha(xcb_window_t manager)
{
    auto const wanted = visualOf(manager);
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(xcbConnection()));
    for (; screens.rem > 0; xcb_screen_next(&screens)) {
        for (auto depths = xcb_screen_allowed_depths_iterator(screens.data); depths.rem > 0; xcb_depth_next(&depths)) {
            auto visuals = xcb_depth_visuals_iterator(depths.data);
            for (; visuals.rem > 0; xcb_visualtype_next(&visuals)) {
                if (visuals.data->visual_id == wanted)
                    return depths.data->depth == depthWithAlpha;
            }
        }
    }
    return false;
}

/// Places in X11 pixels, counted from the same corner of the screen, as Qt counts them.
QRect toDeviceIndependent(QRect const& native)
{
    for (auto const* screen : QGuiApplication::screens()) {
        auto const origin = screen->geometry().topLeft();
        auto const ratio = screen->devicePixelRatio();
        QRect const nativeScreen(origin, (QSizeF(screen->size()) * ratio).toSize());
        if (nativeScreen.contains(native.center())) {
            auto const place = QPointF(native.topLeft() - origin) / ratio + origin;
            return { place.toPoint(), (QSizeF(native.size()) / ratio).toSize() };
        }
    }
    return native;
}

}

TrayIconWindow::TrayIconWindow(
    xcb_window_t manager, Image image, std::function<void(Qt::MouseButton, Qt::KeyboardModifiers)> pressed)
    : manager_(manager)
    , root_(xcbRootWindow())
    , pressed_(std::move(pressed))
{
    setWindowFlags(Qt::Window | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint | Qt::WindowDoesNotAcceptFocus);
    setAttribute(Qt::WA_TranslucentBackground, managerPaintsAlpha(manager));
    setAttribute(Qt::WA_AlwaysShowToolTips);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_QuitOnClose, false);
    setFocusPolicy(Qt::NoFocus);
    // Managers give an icon no less room than its window asks for.
    setMinimumSize(sizeHint());
    setImage(std::move(image));
    resize(sizeHint());
    QCoreApplication::instance()->installNativeEventFilter(this);
    requestDock();
}

TrayIconWindow::~TrayIconWindow()
{
    if (auto* application = QCoreApplication::instance())
        application->removeNativeEventFilter(this);
}

void TrayIconWindow::setImage(Image image)
{
    image_ = std::move(image);
    auto const name = displayText(image_.accessibilityDescription);
    setWindowTitle(name);
    setToolTip(plainAsRichText(name));
    setAccessibleName(name);
    update();
}

QSize TrayIconWindow::sizeHint() const
{
    return { usualSide, usualSide };
}

void TrayIconWindow::requestDock()
{
    auto* connection = xcbConnection();
    auto const window = static_cast<xcb_window_t>(winId());
    if (!testAttribute(Qt::WA_TranslucentBackground)) {
        std::uint32_t const pixmap = XCB_BACK_PIXMAP_PARENT_RELATIVE;
        xcb_change_window_attributes(connection, window, XCB_CW_BACK_PIXMAP, &pixmap);
    }
    xcb_client_message_event_t request {};
    request.response_type = XCB_CLIENT_MESSAGE;
    request.format = 32;
    request.window = manager_;
    request.type = xcbAtom("_NET_SYSTEM_TRAY_OPCODE");
    request.data.data32[0] = XCB_CURRENT_TIME;
    request.data.data32[1] = requestDockOpcode;
    request.data.data32[2] = window;
    auto const cookie = xcb_send_event_checked(
        connection, 0, manager_, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<char const*>(&request));
    // A manager that has gone meanwhile tells so by the end of its window.
    XcbReply<xcb_generic_error_t> const error(xcb_request_check(connection, cookie));
}

bool TrayIconWindow::nativeEventFilter(QByteArray const& eventType, void* message, qintptr*)
{
    if (eventType != "xcb_generic_event_t")
        return false;
    auto const* event = static_cast<xcb_generic_event_t const*>(message);
    auto const window = static_cast<xcb_window_t>(internalWinId());
    switch (event->response_type & ~sentEventBit) {
    case XCB_REPARENT_NOTIFY: {
        auto const* reparent = reinterpret_cast<xcb_reparent_notify_event_t const*>(event);
        if (reparent->window == window)
            reparented(reparent->parent);
        break;
    }
    case XCB_EXPOSE:
        // The manager may have painted its own window anew.
        if (reinterpret_cast<xcb_expose_event_t const*>(event)->window == window)
            background_ = QPixmap();
        break;
    }
    return false;
}

void TrayIconWindow::reparented(xcb_window_t parent)
{
    isEmbedded_ = parent != root_;
    background_ = QPixmap();
    // The server gives the icon of a manager that dies back to the root window, where it would stand about.
    setVisible(isEmbedded_);
}

std::optional<QRect> TrayIconWindow::globalGeometry() const
{
    if (!isEmbedded_)
        return std::nullopt;
    auto* connection = xcbConnection();
    auto const window = static_cast<xcb_window_t>(internalWinId());
    auto const sizeCookie = xcb_get_geometry(connection, window);
    auto const placeCookie = xcb_translate_coordinates(connection, window, root_, 0, 0);
    XcbReply<xcb_get_geometry_reply_t> const size(xcb_get_geometry_reply(connection, sizeCookie, nullptr));
    XcbReply<xcb_translate_coordinates_reply_t> const place(
        xcb_translate_coordinates_reply(connection, placeCookie, nullptr));
    if (!size || !place)
        return std::nullopt;
    return toDeviceIndependent({ place->dst_x, place->dst_y, size->width, size->height });
}

QPixmap TrayIconWindow::grabbedBackground()
{
    if (background_.isNull()) {
        xcb_clear_area(xcbConnection(), 0, static_cast<xcb_window_t>(internalWinId()), 0, 0, 0, 0);
        background_ = screen()->grabWindow(internalWinId(), 0, 0, width(), height());
    }
    return background_;
}

bool TrayIconWindow::event(QEvent* event)
{
    // Of the program's windows the toolkit lets the user reach only the modal one and those that belong to it. What a
    // click does meanwhile is for others to say.
    if (event->type() == QEvent::WindowBlocked)
        windowHandle()->setTransientParent(QGuiApplication::modalWindow());
    return QAbstractButton::event(event);
}

void TrayIconWindow::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    if (testAttribute(Qt::WA_TranslucentBackground))
        painter.fillRect(rect(), Qt::transparent);
    else
        painter.drawPixmap(rect(), grabbedBackground());
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    auto const side = std::min(width(), height());
    QRect const place((width() - side) / 2, (height() - side) / 2, side, side);
    panelIconFor(image_).paint(&painter, place);
}

void TrayIconWindow::resizeEvent(QResizeEvent* event)
{
    background_ = QPixmap();
    QAbstractButton::resizeEvent(event);
}

void TrayIconWindow::mousePressEvent(QMouseEvent* event)
{
    pressed_(event->button(), event->modifiers());
}

void TrayIconWindow::mouseReleaseEvent(QMouseEvent*) { }

void TrayIconWindow::mouseDoubleClickEvent(QMouseEvent* event)
{
    mousePressEvent(event);
}

}
