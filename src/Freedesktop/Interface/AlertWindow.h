#pragma once

#include "Platform/Alerts.h"

#include <QDialog>

#include <cstddef>
#include <set>
#include <vector>

class QBoxLayout;
class QScrollArea;

namespace marrowick {

class AlertText;

/// The window of one alert. It keeps the program's other windows from the user, never is larger than its screen, and
/// `finished` tells that it has been answered.
class AlertWindow : public QDialog {
public:
    explicit AlertWindow(Alert const& alert);

    /// Shows the window in front of all others, on the screen that the pointer is on.
    void showInFront();

    /// The index of the button that was pressed, and that of the last one where none was.
    std::size_t answer() const;

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;

private:
    QWidget* makeIcon(AlertStyle style);
    QScrollArea* makeText(Alert const& alert);
    QBoxLayout* makeButtons(Alert const& alert);
    void fitInto(QSize available);
    /// Whether the key went down before the window had the keyboard: whatever that was for, it is no answer.
    bool isHeldOver(QKeyEvent const& event) const;
    void noteRelease(QKeyEvent const& event);

    std::vector<AlertText*> paragraphs_;
    QScrollArea* text_;
    QBoxLayout* iconRow_;
    std::size_t buttonCount_;
    std::set<quint32> heldKeys_;
};

}
