#include "Freedesktop/Interface/MenuStyle.h"

#include <QApplication>
#include <QStyleFactory>

namespace marrowick {

MenuStyle::MenuStyle()
    : QProxyStyle(QStyleFactory::create(QApplication::style()->name()))
{
}

bool MenuStyle::isCurrent() const
{
    return baseStyle()->name() == QApplication::style()->name();
}

int MenuStyle::styleHint(
    StyleHint hint, QStyleOption const* option, QWidget const* widget, QStyleHintReturn* returnData) const
{
    if (hint == SH_Menu_Scrollable)
        return 1;
    // A light shadow makes the text of disabled entries unreadable in dark palettes.
    if (hint == SH_EtchDisabledText)
        return 0;
    return QProxyStyle::styleHint(hint, option, widget, returnData);
}

int MenuStyle::pixelMetric(PixelMetric metric, QStyleOption const* option, QWidget const* widget) const
{
    constexpr int iconSide = 16;
    if (metric == PM_SmallIconSize)
        return iconSide;
    return QProxyStyle::pixelMetric(metric, option, widget);
}

}
