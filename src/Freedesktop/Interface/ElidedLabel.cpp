#include "Freedesktop/Interface/ElidedLabel.h"

#include "Freedesktop/Interface/Conversions.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QToolTip>

#include <algorithm>
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
}

void ElidedLabel::setWholeText(QString const& text)
{
    whole_ = text;
    setAccessibleName(text);
    fit();
}

QSize ElidedLabel::minimumSizeHint() const
{
    return { 0, QLabel::minimumSizeHint().height() };
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

QFont ElidedLabel::fittingFont() const
{
    int const room = contentsRect().width();
    int const width = QFontMetrics(font_).horizontalAdvance(whole_);
    if (tightening_ == Tightening::never || width <= room)
        return font_;
    QFont fitting = font_;
    for (int spacing = std::max(tightest, 100 * room / width); spacing >= tightest; --spacing) {
        fitting.setLetterSpacing(QFont::PercentageSpacing, spacing);
        if (QFontMetrics(fitting).horizontalAdvance(whole_) <= room)
            break;
    }
    return fitting;
}

void ElidedLabel::fit()
{
    if (auto const fitting = fittingFont(); fitting != font()) {
        isFitting_ = true;
        setFont(fitting);
        isFitting_ = false;
    }
    setText(fontMetrics().elidedText(whole_, mode_, contentsRect().width()));
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
    QLabel::paintEvent(event);
    drawFocusFrame(*this);
}

}
