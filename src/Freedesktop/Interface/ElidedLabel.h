#pragma once

#include "Freedesktop/Interface/Pressable.h"

#include <QLabel>
#include <QTextLayout>

#include <functional>

namespace marrowick {

/// One line of text that is as wide as there is room: where the text is wider a part of it gives way to an ellipsis, and a
/// tool tip shows the whole. Accessibility clients always read the whole.
class ElidedLabel : public QLabel {
public:
    enum class Tightening {
        never,
        /// Moves the letters together a little before leaving any out.
        beforeEliding,
    };

    ElidedLabel(Qt::TextElideMode mode, Tightening tightening, QWidget& parent);

    /// `text` is as it may be shown.
    void setWholeText(QString const& text);

    QSize sizeHint() const override { return minimumSizeHint(); }
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void fit();
    /// Makes the one line that is drawn, and answers its width.
    qreal layOut(QString const& text, QFont const& font);

    QString whole_;
    QFont font_;
    /// The text as it is drawn. Finding the glyphs takes longer than drawing them, so those that were measured are kept.
    QTextLayout line_;
    Qt::TextElideMode mode_;
    Tightening tightening_;
    bool isFitting_ = false;
};

/// A label that a double click presses.
class PressableLabel final : public ElidedLabel, public Pressable {
public:
    PressableLabel(Qt::TextElideMode mode, Tightening tightening, std::function<void()> pressed, QWidget& parent);

    void press() override { pressed_(); }
    QAccessible::Role role() const override { return QAccessible::StaticText; }

protected:
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    std::function<void()> pressed_;
};

}
