#include "Freedesktop/Preview/TextView.h"

#include "Freedesktop/Preview/TextContent.h"

#include <QFontDatabase>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocument>

#include <algorithm>

namespace marrowick {

namespace {

constexpr int margin = 8;
constexpr int wantedColumns = 80;
constexpr int fewestColumns = 40;
constexpr int fewestLines = 8;
constexpr int tabColumns = 8;
/// Laying out takes time that grows faster than a line does.
constexpr qsizetype longestLine = 2000;

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
}

void TextView::show(TextContent const& content)
{
    setPlainText(withShortLines(content.text, longestLine));
    verticalScrollBar()->setValue(0);
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
