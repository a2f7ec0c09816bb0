#pragma once

#include "Freedesktop/Preview/PreviewContent.h"

#include <QLabel>

namespace marrowick {

/// A picture in the middle of the view, as large as there is room for and never larger than it is.
class ImageView final : public QLabel {
public:
    explicit ImageView(QWidget* parent);

    void show(ImageContent content);
    void clear();

    /// The picture's own size on this screen, or what it takes in a smaller `room`.
    QSize wantedSize(QSize room) const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    /// The picture in as many pixels as it is shown in.
    QImage const& fitted(QSize pixels);

    ImageContent content_;
    QImage fitted_;
};

}
