#include "Freedesktop/Preview/TextView.h"

#include "Freedesktop/Preview/TextContent.h"

#include <QFontDatabase>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>
#include <utility>

namespace marrowick {

namespace {

constexpr int margin = 8;
constexpr int wantedColumns = 100;
constexpr int fewestColumns = 40;
constexpr int fewestLines = 8;
constexpr int tabColumns = 8;
/// Laying out takes time that grows faster than a line does.
constexpr qsizetype longestLine = 2000;
/// Each takes some microseconds to become a part of the document.
constexpr int linesAtATime = 5000;

}

TextView::TextView(QWidget* parent)
    : QPlainTextEdit(parent)
{
    setFrameShape(QFrame::NoFrame);
    setReadOnly(true);
    setUndoRedoEnabled(false);
    // Without a cursor of the keyboard the arrows scroll.
    setTextInteractionFlags(Qt::TextSelectableByMouse);
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setTabStopDistance(tabColumns * fontMetrics().horizontalAdvance(u' '));
    document()->setDocumentMargin(margin);
    connect(&appending_, &QTimer::timeout, this, [this] { appendLines(); });
}

void TextView::show(TextContent const& content)
{
    whole_ = withShortLines(content.text, longestLine);
    shownLength_ = 0;
    setPlainText(nextLines().toString());
    verticalScrollBar()->setValue(0);
    appending_.start();
}

void TextView::clear()
{
    appending_.stop();
    whole_.clear();
    QPlainTextEdit::clear();
}

QStringView TextView::nextLines()
{
    auto end = shownLength_;
    for (int line = 0; line < linesAtATime && end < whole_.size(); ++line) {
        auto const lineEnd = whole_.indexOf(u'\n', end);
        end = lineEnd < 0 ? whole_.size() : lineEnd + 1;
    }
    auto const begin = std::exchange(shownLength_, end);
    return QStringView(whole_).mid(begin, end - begin);
}

void TextView::appendLines()
{
    if (shownLength_ == whole_.size()) {
        appending_.stop();
        return;
    }
    QTextCursor end(document());
    end.movePosition(QTextCursor::End);
    end.insertText(nextLines().toString());
}

QSize TextView::wantedSize(QSize room) const
{
    auto const metrics = fontMetrics();
    int const column = std::max(metrics.horizontalAdvance(u'0'), 1);
    int const line = metrics.lineSpacing();
    int const mostLines = std::max(room.height() / line, 1);

    int columns = fewestColumns;
    int lines = 0;
    for (auto block = document()->begin(); block.isValid() && lines < mostLines; block = block.next()) {
        columns = std::max(columns, block.length());
        lines += 1 + (block.length() - 1) / wantedColumns;
    }
    return { std::min(columns, wantedColumns) * column + 2 * margin + verticalScrollBar()->sizeHint().width() + column,
        std::max(lines + 1, fewestLines) * line + 2 * margin };
}

}
