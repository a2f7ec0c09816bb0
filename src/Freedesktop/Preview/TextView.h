#pragma once

#include "Freedesktop/Preview/PreviewContent.h"

#include <QPlainTextEdit>
#include <QString>
#include <QStringView>
#include <QTimer>

namespace marrowick {

/// A text to read, in a font of one width.
class TextView final : public QPlainTextEdit {
public:
    explicit TextView(QWidget* parent);

    /// Of a text of many lines the first, and the others from the event loop.
    void show(TextContent const& content);
    void clear();

    /// What shows the text without scrolling, if it fits `room`; of a text of long lines what is good to read.
    QSize wantedSize(QSize room) const;

private:
    /// Takes the next lines from what is left.
    QStringView nextLines();
    void appendLines();

    QString whole_;
    qsizetype shownLength_ = 0;
    QTimer appending_;
};

}
