#include "Freedesktop/Interface/ElidedLabel.h"

#include "Freedesktop/Interface/Conversions.h"

#include <QKeyEvent>
#include <QMouseEvent>

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
    if (tightening_ == Tightening::never)
        return font_;
    QFont fitting = font_;
    for (int spacing = 100; spacing >= tightest; --spacing) {
        fitting.setLetterSpacing(QFont::PercentageSpacing, spacing);
        if (QFontMetrics(fitting).horizontalAdvance(whole_) <= contentsRect().width())
            return fitting;
    }
    return fitting;
}

void ElidedLabel::fit()
{
    isFitting_ = true;
    setFont(fittingFont());
    isFitting_ = false;
    QString const shown = fontMetrics().elidedText(whole_, mode_, contentsRect().width());
    setText(shown);
    setToolTip(shown == whole_ ? QString() : plainAsRichText(whole_));
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
