#pragma once

#include "Freedesktop/Interface/Pressable.h"

#include <QPushButton>

namespace marrowick {

/// A push button that a key without modifiers presses wherever the focus is in its window: at once, and not again while
/// the key is held down.
class KeyButton final : public QPushButton, public Pressable {
public:
    /// `keyEquivalent` is the key's character: Delete is 127, Escape 27; zero is none.
    KeyButton(QString const& title, char keyEquivalent, QWidget& parent);

    void press() override { click(); }
    QAccessible::Role role() const override { return QAccessible::Button; }
    QStringList keys() const override { return keys_; }

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void addKey(Qt::Key key);

    QStringList keys_;
    /// From a press by a key to its release.
    bool isHeld_ = false;
};

}
