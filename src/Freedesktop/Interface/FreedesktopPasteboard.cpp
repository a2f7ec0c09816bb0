#include "Freedesktop/Interface/FreedesktopPasteboard.h"

#include "Freedesktop/Interface/Conversions.h"

#include <QClipboard>
#include <QGuiApplication>

namespace marrowick {

void FreedesktopPasteboard::setText(std::string_view text)
{
    QGuiApplication::clipboard()->setText(exactText(text));
}

}
