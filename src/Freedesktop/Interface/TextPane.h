#pragma once

#include <QBasicTimer>
#include <QPlainTextEdit>

namespace marrowick {

/// Text that is read and not changed, in a place of a fixed height. A text's first rows are there at once; the others follow
/// as soon as those have been painted, so that nobody waits for what cannot be seen.
class TextPane final : public QPlainTextEdit {
public:
    explicit TextPane(QWidget& parent);

    /// Whatever had not followed of the text before does not come any more.
    void setWholeText(QString const& text);

protected:
    void paintEvent(QPaintEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    /// How much of `text` certainly fills the pane.
    qsizetype firstRowsLength(QString const& text) const;
    void useShaping(bool uses);
    void appendRest();

    QString rest_;
    QBasicTimer restTimer_;
};

}
