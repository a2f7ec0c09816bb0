#pragma once

#include "Platform/Menu.h"

#include <QFontMetrics>
#include <QString>

namespace marrowick {

/// The whole title as people may read it.
QString wholeTitle(MenuItem const& item);

/// `wholeTitle`, with its middle left out where it is wider than `width` pixels.
QString shownTitle(MenuItem const& item, QFontMetrics const& metrics, int width);

/// The keys that stand beside the title; empty for none.
QString shortcutText(MenuItem const& item);

/// The text of an entry's QAction.
QString actionText(MenuItem const& item, QFontMetrics const& metrics, int width);

}
