#include "Freedesktop/Interface/InfoPanelWindow.h"

#include "Freedesktop/Interface/Bitmaps.h"
#include "Freedesktop/Interface/Conversions.h"
#include "Freedesktop/Interface/DraggableIcon.h"
#include "Freedesktop/Interface/ElidedLabel.h"
#include "Freedesktop/Interface/KeyButton.h"
#include "Freedesktop/Interface/TaskbarEntry.h"
#include "Freedesktop/Interface/TextPane.h"
#include "Freedesktop/Interface/XcbHandles.h"

#include <QApplication>
#include <QCursor>
#include <QFontDatabase>
#include <QFontInfo>
#include <QHBoxLayout>
#include <QScreen>
#include <QVBoxLayout>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace marrowick {

namespace {

constexpr QSize contentSize(340, 420);
constexpr int iconSide = 96;
constexpr int margin = 16;
constexpr int sectionSpacing = 10;
constexpr int textSpacing = 2;
constexpr int buttonSpacing = 8;
constexpr int previewHeight = 140;

constexpr int namePoints = 15;
constexpr int detailPoints = 11;
constexpr int pathPoints = 10;
constexpr int previewPoints = 10;
/// The size of ordinary text that the sizes above go with.
constexpr int ordinaryPoints = 13;

/// `base` at `points`, or larger in the measure in which the user's ordinary text is larger.
QFont sized(QFont base, int points, QFont const& ordinary)
{
    int const scaled = points * QFontInfo(ordinary).pixelSize() / ordinaryPoints;
    base.setPixelSize(std::max(points, scaled));
    return base;
}

/// What is left of `palette`'s text colour when it steps back towards the background.
QColor faded(QPalette const& palette, qreal strength)
{
    auto const text = palette.color(QPalette::Active, QPalette::WindowText);
    auto const ground = palette.color(QPalette::Active, QPalette::Window);
    auto const mix = [strength](float a, float b) { return static_cast<float>(a * strength + b * (1 - strength)); };
    return QColor::fromRgbF(
        mix(text.redF(), ground.redF()), mix(text.greenF(), ground.greenF()), mix(text.blueF(), ground.blueF()));
}

void setTextColour(QWidget& label, QColor const& colour)
{
    QPalette palette;
    palette.setColor(QPalette::WindowText, colour);
    label.setPalette(palette);
}

QRect screenInUse()
{
    // Where there is only one it is not worth asking the display for the pointer.
    auto const* screen = QGuiApplication::screens().size() > 1 ? QGuiApplication::screenAt(QCursor::pos()) : nullptr;
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    return screen ? screen->availableGeometry() : QRect();
}

/// The program's icon as far as a window in no taskbar needs it. Each opening has the display copy all of it, twice.
QIcon titleBarIcon()
{
    auto const whole = QApplication::windowIcon();
    QIcon icon;
    for (int const side : { 16, 48 })
        icon.addPixmap(whole.pixmap({ side, side }, 1.0));
    return icon;
}

/// `text` for a window's title, where a star in brackets stands for unsaved changes.
QString windowTitleText(QString text)
{
    return text.replace(QLatin1String("[*]"), QLatin1String("[*][*]"));
}

}

InfoPanelWindow::InfoPanelWindow(InfoPanelHandlers handlers)
    : QWidget(nullptr,
        Qt::Tool | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint
            | Qt::WindowStaysOnTopHint)
    , handlers_(std::move(handlers))
    , icon_(new DraggableIcon(
          iconSide, [this](int clickCount) { handlers_.iconPressed(clickCount); }, *this))
    , name_(new ElidedLabel(Qt::ElideMiddle, ElidedLabel::Tightening::never, *this))
    , detail_(new ElidedLabel(Qt::ElideRight, ElidedLabel::Tightening::beforeEliding, *this))
    , path_(new PressableLabel(
          Qt::ElideLeft, ElidedLabel::Tightening::beforeEliding, [this] { handlers_.pathDoubleClicked(); }, *this))
    , preview_(new TextPane(*this))
{
    // The program does not end with its windows.
    setAttribute(Qt::WA_QuitOnClose, false);
    setFocusPolicy(Qt::ClickFocus);
    setWindowIcon(titleBarIcon());
    icon_->setAccessibleName(QStringLiteral("Picture"));
    icon_->setAccessibleDescription(QStringLiteral("Opens the file"));
    path_->setAccessibleDescription(QStringLiteral("Copies the path"));
    preview_->setAccessibleName(QStringLiteral("Beginning of the text"));
    preview_->setFixedHeight(previewHeight);
    preview_->hide();
    applyFonts();
    applyColours();
    layOut();
}

void InfoPanelWindow::layOut()
{
    auto* const texts = new QVBoxLayout;
    texts->setSpacing(textSpacing);
    texts->addWidget(name_);
    texts->addWidget(detail_);
    texts->addWidget(path_);

    auto* const buttons = new QHBoxLayout;
    buttons->setSpacing(buttonSpacing);
    for (auto const& button : handlers_.buttons) {
        auto* const made = new KeyButton(titleText(button.title), button.keyEquivalent, *this);
        // Styles ask for more room than the title needs, so that buttons of a dialog look alike.
        made->setMinimumWidth(made->fontMetrics().horizontalAdvance(made->text()) + 2 * buttonSpacing);
        made->setAccessibleName(displayText(button.title));
        connect(made, &QPushButton::clicked, this, button.action);
        buttons->addWidget(made);
    }

    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(sectionSpacing);
    column->addStretch();
    column->addWidget(icon_, 0, Qt::AlignHCenter);
    column->addLayout(texts);
    column->addStretch();
    column->addWidget(preview_);
    column->addLayout(buttons);
}

void InfoPanelWindow::applyFonts()
{
    auto const ordinary = QApplication::font();
    auto bold = ordinary;
    bold.setBold(true);
    name_->setFont(sized(bold, namePoints, ordinary));
    detail_->setFont(sized(ordinary, detailPoints, ordinary));
    path_->setFont(sized(ordinary, pathPoints, ordinary));
    preview_->setFont(sized(QFontDatabase::systemFont(QFontDatabase::FixedFont), previewPoints, ordinary));
}

void InfoPanelWindow::applyColours()
{
    constexpr qreal secondary = 0.82;
    constexpr qreal tertiary = 0.68;
    setTextColour(*detail_, faded(palette(), secondary));
    setTextColour(*path_, faded(palette(), tertiary));
}

void InfoPanelWindow::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyColours();
    else if (event->type() == QEvent::FontChange)
        applyFonts();
}

void InfoPanelWindow::setName(std::string const& name)
{
    auto const shown = displayText(name);
    setWindowTitle(windowTitleText(QStringLiteral("%1 Info").arg(shown)));
    fill([this, shown] { name_->setWholeText(shown); });
}

void InfoPanelWindow::setDetail(std::string const& detail)
{
    fill([this, shown = displayText(detail)] { detail_->setWholeText(shown); });
}

void InfoPanelWindow::setPath(std::string const& path)
{
    fill([this, shown = displayText(path)] { path_->setWholeText(shown); });
}

void InfoPanelWindow::setPreview(std::optional<std::string> const& text)
{
    preview_->setVisible(text.has_value());
    fill([this, shown = exactText(text.value_or(std::string()))] { preview_->setWholeText(shown); });
}

void InfoPanelWindow::fill(std::function<void()> part)
{
    if (isVisible())
        part();
    else
        unfilled_.push_back(std::move(part));
}

void InfoPanelWindow::fillEverything()
{
    for (auto const& part : std::exchange(unfilled_, {}))
        part();
}

void InfoPanelWindow::setIcon(Bitmap const& icon)
{
    icon_->setImage(imageFrom(icon));
}

double InfoPanelWindow::backingScaleFactor() const
{
    return devicePixelRatioF();
}

void InfoPanelWindow::dragIcon(FileURL const& url)
{
    icon_->drag(url);
}

void InfoPanelWindow::show()
{
    layout()->activate();
    setFixedSize(layout()->minimumSize().expandedTo(contentSize));
    move(screenInUse().center() - rect().center());
    // The keys are the window's own; otherwise the toolkit gives them to the first widget that takes any.
    setFocus();
    if (!isVisible())
        leaveOutOfTaskbars(*this);
    showNormal();
    raise();
    takeKeys();
    // Nothing is painted before this returns. Meanwhile the display and the window manager make room for the window.
    if (auto* const connection = xcbConnection())
        xcb_flush(connection);
    fillEverything();
}

void InfoPanelWindow::close()
{
    QWidget::close();
}

void InfoPanelWindow::takeKeys()
{
    if (QApplication::activePopupWidget())
        waitForMenus(true);
    else
        activateWindow();
}

void InfoPanelWindow::waitForMenus(bool waits)
{
    if (std::exchange(isWaitingForMenus_, waits) == waits)
        return;
    if (waits)
        qApp->installEventFilter(this);
    else
        qApp->removeEventFilter(this);
}

bool InfoPanelWindow::eventFilter(QObject* watched, QEvent* event)
{
    auto const* const widget = event->type() == QEvent::Hide ? qobject_cast<QWidget*>(watched) : nullptr;
    if (widget && widget->windowType() == Qt::Popup) {
        // After the menu has let go of the keyboard.
        auto const take = [this] {
            if (!isWaitingForMenus_ || QApplication::activePopupWidget())
                return;
            waitForMenus(false);
            // What the window manager did about the keyboard while a menu was open, the toolkit has not noticed.
            if (windowHandle() && QGuiApplication::focusWindow() == windowHandle())
                QApplication::setActiveWindow(this);
            activateWindow();
        };
        QMetaObject::invokeMethod(this, take, Qt::QueuedConnection);
    }
    return QWidget::eventFilter(watched, event);
}

void InfoPanelWindow::hideEvent(QHideEvent* event)
{
    waitForMenus(false);
    QWidget::hideEvent(event);
}

}
