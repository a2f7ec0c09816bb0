#pragma once

#include <QLabel>
#include <QTextLayout>

namespace marrowick {

/// A text that stands for itself in every character, in lines of one width. A line feed begins a line, and a word that is wider than the line goes
/// on in the next one, as long file names have to.
class AlertText : public QLabel {
public:
    /// Of a text that nobody would read to its end the middle is left out.
    AlertText(QString const& text, QFont const& font, QWidget& parent);

    /// Breaks the text into lines of at most `width` pixels, and takes the size that they need.
    void layOut(int width);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QTextLayout layout_;
};

}
