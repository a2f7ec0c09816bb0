#pragma once

#include <QAccessible>
#include <QStringList>

class QWidget;

namespace marrowick {

/// A widget that does something when it is pressed: by accessibility clients too, which hear what it is and which keys
/// press it.
class Pressable {
public:
    Pressable();
    virtual ~Pressable() = default;
    Pressable(Pressable const&) = delete;
    Pressable& operator=(Pressable const&) = delete;

    virtual void press() = 0;
    virtual QAccessible::Role role() const = 0;
    /// As they may be shown; those that press whatever has the focus are not among them.
    virtual QStringList keys() const { return {}; }
};

/// Draws the frame that shows the keyboard's focus around `widget`, where it has the focus by the keyboard.
void drawFocusFrame(QWidget& widget);

/// Whether the key is one that presses what has the focus.
bool isPressKey(int key);

}
