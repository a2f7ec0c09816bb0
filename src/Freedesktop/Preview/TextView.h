#pragma once

#include "Freedesktop/Preview/PreviewContent.h"

#include <QPlainTextEdit>

namespace marrowick {

/// A text to read, in a font of one width.
class TextView final : public QPlainTextEdit {
public:
    explicit TextView(QWidget* parent);

    void show(TextContent const& content);

    /// What shows the text without scrolling, if it fits `room`; of a text of long lines what is good to read.
    QSize wantedSize(QSize room) const;
};

}
