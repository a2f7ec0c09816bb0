#include "Freedesktop/Interface/KeyButton.h"

#include "Freedesktop/Interface/XcbHandles.h"

#include <QApplication>
#include <QKeyEvent>
#include <QKeySequence>

#include <cctype>
#include <utility>

namespace marrowick {

namespace {

constexpr char deleteCharacter = 127;
constexpr char escapeCharacter = 27;

Qt::Key keyOf(char character)
{
    if (character == deleteCharacter)
        return Qt::Key_Delete;
    if (character == escapeCharacter)
        return Qt::Key_Escape;
    return static_cast<Qt::Key>(std::toupper(static_cast<unsigned char>(character)));
}

}

KeyButton::KeyButton(QString const& title, char keyEquivalent, QWidget& parent)
    : QPushButton(&parent)
{
    // Not by the base: with its text a button tells accessibility clients what it is.
    setText(title);
    setAutoDefault(false);
    if (keyEquivalent == 0)
        return;
    addKey(keyOf(keyEquivalent));
    // Some keyboards have no other key for it.
    if (keyEquivalent == deleteCharacter)
        addKey(Qt::Key_Backspace);
}

void KeyButton::addKey(Qt::Key key)
{
    QKeySequence const sequence(key);
    setShortcutAutoRepeat(grabShortcut(sequence), false);
    keys_.append(sequence.toString(QKeySequence::NativeText));
}

bool KeyButton::event(QEvent* event)
{
    if (event->type() != QEvent::Shortcut)
        return QPushButton::event(event);
    // The toolkit's own shortcut of a button would press it a moment later, when the window may show something else.
    if (!std::exchange(isHeld_, true)) {
        qApp->installEventFilter(this);
        click();
    }
    return true;
}

bool KeyButton::eventFilter(QObject* watched, QEvent* event)
{
    // A repetition looks like a release and a press; the keys that are down tell it from another press.
    bool const isReleased = event->type() == QEvent::KeyRelease
        && !xcbPressedKeys().contains(static_cast<QKeyEvent const*>(event)->nativeScanCode());
    // Where the keyboard goes elsewhere the release is not seen.
    bool const isUnseen
        = watched == window() && (event->type() == QEvent::WindowDeactivate || event->type() == QEvent::Hide);
    if (isReleased || isUnseen) {
        isHeld_ = false;
        qApp->removeEventFilter(this);
    }
    return QPushButton::eventFilter(watched, event);
}

}
