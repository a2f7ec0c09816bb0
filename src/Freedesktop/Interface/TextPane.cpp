#include "Freedesktop/Interface/TextPane.h"

#include <QTextBlock>
#include <QTextLayout>
#include <QTimerEvent>

#include <algorithm>
#include <utility>

namespace marrowick {

namespace {

/// More than fit into a row.
constexpr qsizetype longestRow = 80;
/// What is not painted because it is behind something else is complete after this time all the same.
constexpr int patienceMilliseconds = 100;

/// From here on letters may have to be put together of several characters.
constexpr char16_t firstCombining = 0x300;

/// Whether each character has one glyph, and all are equally wide: then shaping the text would only cost time.
bool isSimple(QString const& text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < firstCombining; });
}

}

TextPane::TextPane(QWidget& parent)
    : QPlainTextEdit(&parent)
{
    setReadOnly(true);
    // A reader of the screen follows the cursor.
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setTabChangesFocus(true);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setUndoRedoEnabled(false);
}

void TextPane::setWholeText(QString const& text)
{
    auto const length = firstRowsLength(text);
    rest_ = text.mid(length);
    useShaping(!isSimple(text));
    setPlainText(text.left(length));
    // Laying out and painting each find the glyphs otherwise.
    for (auto block = document()->begin(); block.isValid(); block = block.next())
        block.layout()->setCacheEnabled(true);
    if (rest_.isEmpty())
        restTimer_.stop();
    else
        restTimer_.start(patienceMilliseconds, this);
}

void TextPane::useShaping(bool uses)
{
    auto changed = font();
    int const strategy = changed.styleStrategy();
    changed.setStyleStrategy(static_cast<QFont::StyleStrategy>(
        uses ? strategy & ~QFont::PreferNoShaping : strategy | QFont::PreferNoShaping));
    if (changed.styleStrategy() != strategy)
        setFont(changed);
}

qsizetype TextPane::firstRowsLength(QString const& text) const
{
    // The last row may be cut off at the pane's edge, and the scroll bar is to know that there is more.
    int rows = maximumHeight() / fontMetrics().lineSpacing() + 2;
    qsizetype length = 0;
    for (; rows > 0 && length < text.size(); --rows) {
        auto const end = text.indexOf(u'\n', length);
        auto const rowEnd = end < 0 ? text.size() : end + 1;
        length = std::min(rowEnd, length + longestRow);
    }
    // What ends a line together is not taken apart.
    if (length > 0 && length < text.size() && text[length - 1] == u'\r' && text[length] == u'\n')
        ++length;
    return length;
}

void TextPane::appendRest()
{
    restTimer_.stop();
    QTextCursor end(document());
    end.movePosition(QTextCursor::End);
    end.insertText(std::exchange(rest_, {}));
}

void TextPane::paintEvent(QPaintEvent* event)
{
    QPlainTextEdit::paintEvent(event);
    if (!rest_.isEmpty())
        restTimer_.start(0, this);
}

void TextPane::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == restTimer_.timerId())
        appendRest();
    else
        QPlainTextEdit::timerEvent(event);
}

}
