#include "Freedesktop/Interface/AlertText.h"

#include <QPaintEvent>
#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <cmath>

namespace marrowick {

namespace {

/// The names of some thousand files. A window's side cannot be longer than what this many characters need in lines, and
/// breaking them takes a time that is not felt.
constexpr qsizetype longestText = 40000;

QString withoutUnreadMiddle(QString const& text)
{
    if (text.size() <= longestText)
        return text;
    auto head = text.left(longestText / 2);
    auto tail = text.right(longestText / 2);
    // Characters beyond the first plane are pairs.
    if (head.back().isHighSurrogate())
        head.chop(1);
    if (tail.front().isLowSurrogate())
        tail.remove(0, 1);
    return head + QChar(0x2026) + tail;
}

}

AlertText::AlertText(QString const& text, QFont const& font, QWidget& parent)
    : QLabel(&parent)
{
    setTextFormat(Qt::PlainText);
    setFont(font);
    setText(withoutUnreadMiddle(text));

    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    // A name in letters that run the other way does not turn the sentence around it.
    option.setTextDirection(layoutDirection());
    option.setAlignment(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeading));
    // A layout of its own breaks lines at no other character.
    layout_.setText(QLabel::text().replace(u'\n', QChar::LineSeparator));
    layout_.setFont(font);
    layout_.setTextOption(option);
    layout_.setCacheEnabled(true);
}

void AlertText::layOut(int width)
{
    qreal height = 0;
    qreal widest = 0;
    layout_.beginLayout();
    for (auto line = layout_.createLine(); line.isValid(); line = layout_.createLine()) {
        line.setLineWidth(width);
        line.setPosition({ 0, height });
        height += line.height();
        widest = std::max(widest, line.naturalTextWidth());
    }
    layout_.endLayout();
    auto const right = isRightToLeft() ? width : static_cast<int>(std::ceil(widest));
    setFixedSize(std::min(right, width), static_cast<int>(std::ceil(height)));
}

void AlertText::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    layout_.draw(&painter, {}, {}, event->rect());
}

}
