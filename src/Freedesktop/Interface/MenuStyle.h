#pragma once

#include <QProxyStyle>

namespace marrowick {

/// The application's style, but for what a menu of any length needs: it scrolls where it would leave the screen, its
/// icons are of one size, and disabled entries can be read.
class MenuStyle : public QProxyStyle {
public:
    MenuStyle();

    /// Whether this stands on the style that the application has.
    bool isCurrent() const;

    int styleHint(
        StyleHint hint, QStyleOption const* option, QWidget const* widget, QStyleHintReturn* returnData) const override;
    int pixelMetric(PixelMetric metric, QStyleOption const* option, QWidget const* widget) const override;
};

}
