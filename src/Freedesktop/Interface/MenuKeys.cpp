#include "Freedesktop/Interface/MenuKeys.h"

#include "Freedesktop/Interface/Conversions.h"
#include "Freedesktop/Interface/FreedesktopEvents.h"

#include <QString>

namespace marrowick {

namespace {

/// The text of keys that have a name in Qt but a character on the desktop's keyboards.
char const* namedKeyText(int key)
{
    switch (key) {
    case Qt::Key_Delete:
        return "\x7F";
    case Qt::Key_Backspace:
        return "\b";
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return "\t";
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return "\r";
    case Qt::Key_Escape:
        return "\x1B";
    default:
        return nullptr;
    }
}

/// Keys below this value are the code point of the character, in upper case where it has a case.
constexpr int firstNamedKey = 0x01000000;

bool isPrintable(QString const& text)
{
    for (QChar const c : text) {
        if (!c.isPrint() && !c.isSurrogate())
            return false;
    }
    return !text.isEmpty();
}

QString characters(QKeyEvent const& event)
{
    int const key = event.key();
    if (key > 0 && key < firstNamedKey) {
        auto const codePoint = static_cast<char32_t>(key);
        QString const typed = QString::fromUcs4(&codePoint, 1);
        return event.modifiers().testFlag(Qt::ShiftModifier) ? typed : typed.toLower();
    }
    // Qt names no key for characters that only a combination of keys makes.
    bool const isNamed = key >= firstNamedKey && key != Qt::Key_unknown;
    return !isNamed && isPrintable(event.text()) ? event.text() : QString();
}

}

bool isModifierKey(int key)
{
    switch (key) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Meta:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
    case Qt::Key_ScrollLock:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
    case Qt::Key_Hyper_L:
    case Qt::Key_Hyper_R:
    case Qt::Key_Mode_switch:
    case Qt::Key_Multi_key:
        return true;
    default:
        return false;
    }
}

KeyEvent keyEventFrom(QKeyEvent const& event)
{
    KeyEvent made { EventType::keyDown, modifierFlagsFrom(event.modifiers()), {} };
    if (auto const* text = namedKeyText(event.key()))
        made.charactersIgnoringModifiers = text;
    else
        made.charactersIgnoringModifiers = utf8From(characters(event));
    return made;
}

}
