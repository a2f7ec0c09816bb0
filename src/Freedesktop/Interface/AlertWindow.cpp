#include "Freedesktop/Interface/AlertWindow.h"

#include "Freedesktop/Interface/AlertText.h"
#include "Freedesktop/Interface/Conversions.h"
#include "Freedesktop/Interface/XcbHandles.h"

#include <QAccessible>
#include <QBoxLayout>
#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>

#include <algorithm>

namespace marrowick {

namespace {

bool isAnswerKey(int key)
{
    return key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Escape || key == Qt::Key_Space;
}

QScreen& activeScreen()
{
    auto* const screen = QGuiApplication::screenAt(QCursor::pos());
    return screen ? *screen : *QGuiApplication::primaryScreen();
}

QFont boldFont(QFont font)
{
    font.setBold(true);
    return font;
}

}

AlertWindow::AlertWindow(Alert const& alert)
    : QDialog(nullptr,
        Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint
            | Qt::WindowCloseButtonHint | Qt::WindowStaysOnTopHint)
    , text_(makeText(alert))
    , iconRow_(new QHBoxLayout)
    , buttonCount_(std::max<std::size_t>(alert.buttons.size(), 1))
{
    setWindowTitle(QStringLiteral("Marrowick"));
    setAccessibleDescription(displayText(alert.messageText));
    setModal(true);

    int const spacing = fontMetrics().height();
    iconRow_->setSpacing(spacing);
    iconRow_->addWidget(makeIcon(alert.style), 0, Qt::AlignTop);
    iconRow_->addWidget(text_, 1, Qt::AlignVCenter | Qt::AlignLeading);
    auto* const whole = new QVBoxLayout(this);
    whole->setSizeConstraint(QLayout::SetFixedSize);
    whole->setContentsMargins(spacing, spacing, spacing, spacing);
    whole->setSpacing(spacing);
    whole->addLayout(iconRow_);
    whole->addLayout(makeButtons(alert));
}

QWidget* AlertWindow::makeIcon(AlertStyle alertStyle)
{
    auto const picture
        = alertStyle == AlertStyle::warning ? QStyle::SP_MessageBoxWarning : QStyle::SP_MessageBoxInformation;
    int const side = style()->pixelMetric(QStyle::PM_MessageBoxIconSize);
    auto* const icon = new QLabel(this);
    icon->setPixmap(style()->standardIcon(picture).pixmap(QSize(side, side), devicePixelRatio()));
    return icon;
}

QScrollArea* AlertWindow::makeText(Alert const& alert)
{
    auto* const area = new QScrollArea(this);
    auto* const texts = new QWidget;
    auto* const column = new QVBoxLayout(texts);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSizeConstraint(QLayout::SetFixedSize);
    auto const add = [&](QString const& text, QFont const& font) {
        if (text.isEmpty())
            return;
        paragraphs_.push_back(new AlertText(text, font, *texts));
        column->addWidget(paragraphs_.back());
    };
    auto const& informative = alert.informativeText;
    add(displayText(alert.messageText), boldFont(font()));
    add(alert.lineFeed == LineFeed::endOfLine ? displayLines(informative) : displayText(informative), font());
    area->setFrameShape(QFrame::NoFrame);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setWidget(texts);
    return area;
}

QBoxLayout* AlertWindow::makeButtons(Alert const& alert)
{
    // A row of its own: desktops sort the buttons of their dialogs, each in another way.
    auto* const row = new QHBoxLayout;
    row->setSpacing(fontMetrics().height() / 2);
    row->addStretch();
    auto const titles = alert.buttons.empty() ? std::vector<std::string> { "OK" } : alert.buttons;
    for (std::size_t index = 0; index < titles.size(); ++index) {
        auto* const button = new QPushButton(titleText(titles[index]), this);
        button->setAutoDefault(true);
        button->installEventFilter(this);
        connect(button, &QPushButton::clicked, this, [this, index] { done(static_cast<int>(index) + 1); });
        row->addWidget(button);
        if (index > 0)
            continue;
        button->setDefault(true);
        button->setFocus();
    }
    return row;
}

std::size_t AlertWindow::answer() const
{
    return result() == Rejected ? buttonCount_ - 1 : static_cast<std::size_t>(result()) - 1;
}

void AlertWindow::fitInto(QSize available)
{
    constexpr int comfortableCharacters = 60;
    constexpr int fewestCharacters = 24;
    // Room is left for the frame, and for what the desktop keeps in view.
    QSize const largest = available * 4 / 5;
    text_->setFixedSize(0, 0);
    layout()->activate();
    auto const margins = layout()->contentsMargins();
    int const gap = iconRow_->spacing() / 2;
    int const scrollBar = gap + text_->verticalScrollBar()->sizeHint().width();
    int const besides = iconRow_->minimumSize().width() + margins.left() + margins.right() + scrollBar;
    int const character = fontMetrics().averageCharWidth();
    int const width = std::max(1, std::min(comfortableCharacters * character, largest.width() - besides));
    for (auto* const paragraph : paragraphs_)
        paragraph->layOut(width);
    text_->widget()->adjustSize();

    QSize const needed = text_->widget()->size();
    int const height = std::clamp(largest.height() - layout()->minimumSize().height(), 1, std::max(1, needed.height()));
    bool const scrolls = height < needed.height();
    text_->setFocusPolicy(scrolls ? Qt::StrongFocus : Qt::NoFocus);
    // With a few words the window would be too small for its title.
    int const shown = std::max(needed.width(), std::min(fewestCharacters * character, width));
    text_->setFixedSize(shown + (scrolls ? scrollBar : 0), height);
    layout()->activate();
    adjustSize();
}

void AlertWindow::showInFront()
{
    if (!isVisible()) {
        auto const available = activeScreen().availableGeometry();
        fitInto(available.size());
        move(available.center() - rect().center());
        show();
        QAccessibleEvent event(this, QAccessible::Alert);
        QAccessible::updateAccessibility(&event);
    }
    setWindowState(windowState() & ~Qt::WindowMinimized);
    raise();
    activateWindow();
}

bool AlertWindow::event(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate)
        heldKeys_ = xcbPressedKeys();
    return QDialog::event(event);
}

bool AlertWindow::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
        if (isHeldOver(static_cast<QKeyEvent&>(*event)))
            return true;
        break;
    case QEvent::KeyRelease:
        noteRelease(static_cast<QKeyEvent&>(*event));
        break;
    default:
        break;
    }
    return QDialog::eventFilter(watched, event);
}

bool AlertWindow::isHeldOver(QKeyEvent const& event) const
{
    return isAnswerKey(event.key()) && (event.isAutoRepeat() || heldKeys_.contains(event.nativeScanCode()));
}

void AlertWindow::noteRelease(QKeyEvent const& event)
{
    // A repetition is reported as a release and a press. The toolkit knows the one by the other, unless it comes too late.
    if (!event.isAutoRepeat() && !xcbPressedKeys().contains(event.nativeScanCode()))
        heldKeys_.erase(event.nativeScanCode());
}

void AlertWindow::keyPressEvent(QKeyEvent* event)
{
    if (isHeldOver(*event))
        return;
    auto* const scrollBar = text_->verticalScrollBar();
    switch (event->key()) {
    case Qt::Key_PageUp:
        scrollBar->triggerAction(QAbstractSlider::SliderPageStepSub);
        break;
    case Qt::Key_PageDown:
        scrollBar->triggerAction(QAbstractSlider::SliderPageStepAdd);
        break;
    default:
        QDialog::keyPressEvent(event);
    }
}

void AlertWindow::keyReleaseEvent(QKeyEvent* event)
{
    noteRelease(*event);
    QDialog::keyReleaseEvent(event);
}

}
