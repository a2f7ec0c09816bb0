#include "Freedesktop/Interface/ElidedLabel.h"

#include "Freedesktop/Interface/Conversions.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>
#include <cmath>
#include <utility>

namespace marrowick {

namespace {

/// In hundredths of the letters' own widths; closer together they would run into each other.
constexpr int tightest = 95;

}

ElidedLabel::ElidedLabel(Qt::TextElideMode mode, Tightening tightening, QWidget& parent)
    : QLabel(&parent)
    , font_(font())
    , mode_(mode)
    , tightening_(tightening)
{
    setTextFormat(Qt::PlainText);
    setAlignment(Qt::AlignCenter);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    line_.setCacheEnabled(true);
}

void ElidedLabel::setWholeText(QString const& text)
{
    whole_ = text;
    setAccessibleName(text);
    fit();
}

QSize ElidedLabel::minimumSizeHint() const
{
    // Letters that the font takes from another one may be higher than its own.
    qreal const height = line_.lineCount() > 0 ? line_.lineAt(0).height() : 0;
    return { 0, std::max(fontMetrics().height(), static_cast<int>(std::ceil(height))) };
}

bool ElidedLabel::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip)
        return QLabel::event(event);
    // Not by a property of the widget, which accessibility clients would read out with its markup.
    auto const whole = text() == whole_ ? QString() : plainAsRichText(whole_);
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), whole, this);
    return true;
}

void ElidedLabel::resizeEvent(QResizeEvent* event)
{
    QLabel::resizeEvent(event);
    fit();
}

void ElidedLabel::changeEvent(QEvent* event)
{
    QLabel::changeEvent(event);
    if (event->type() != QEvent::FontChange || isFitting_)
        return;
    font_ = font();
    fit();
}

qreal ElidedLabel::layOut(QString const& text, QFont const& font)
{
    QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute);
    option.setWrapMode(QTextOption::NoWrap);
    option.setTextDirection(text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    line_.setTextOption(option);
    line_.setText(text);
    line_.setFont(font);
    line_.beginLayout();
    auto line = line_.createLine();
    line_.endLayout();
    return line.isValid() ? line.horizontalAdvance() : 0;
}

void ElidedLabel::fit()
{
    int const room = contentsRect().width();
    QFont fitting = font_;
    qreal width = layOut(whole_, fitting);
    if (tightening_ == Tightening::beforeEliding && width > room) {
        for (int spacing = std::max(tightest, static_cast<int>(100 * room / width)); spacing >= tightest; --spacing) {
            fitting.setLetterSpacing(QFont::PercentageSpacing, spacing);
            width = layOut(whole_, fitting);
            if (width <= room)
                break;
        }
    }
    if (fitting != font()) {
        isFitting_ = true;
        setFont(fitting);
        isFitting_ = false;
    }
    if (width > room) {
        auto const shown = fontMetrics().elidedText(whole_, mode_, room);
        layOut(shown, fitting);
        setText(shown);
    } else {
        setText(whole_);
    }
    update();
}

void ElidedLabel::paintEvent(QPaintEvent*)
{
    if (line_.lineCount() == 0)
        return;
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    auto const line = line_.lineAt(0);
    QRectF const room = contentsRect();
    line_.draw(&painter,
        { room.x() + (room.width() - line.horizontalAdvance()) / 2, room.y() + (room.height() - line.height()) / 2 });
}

PressableLabel::PressableLabel(
    Qt::TextElideMode mode, Tightening tightening, std::function<void()> pressed, QWidget& parent)
    : ElidedLabel(mode, tightening, parent)
    , pressed_(std::move(pressed))
{
    setFocusPolicy(Qt::TabFocus);
}

void PressableLabel::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        press();
}

void PressableLabel::keyPressEvent(QKeyEvent* event)
{
    if (isPressKey(event->key()) && !event->isAutoRepeat())
        press();
    else
        QLabel::keyPressEvent(event);
}

void PressableLabel::paintEvent(QPaintEvent* event)
{
    ElidedLabel::paintEvent(event);
    drawFocusFrame(*this);
}

}
