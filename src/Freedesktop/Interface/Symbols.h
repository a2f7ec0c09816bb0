#pragma once

#include <QColor>
#include <QPixmap>
#include <QSize>
#include <QString>

namespace marrowick {

/// The program's own line drawing called `name`, in `colour`, as large as `size` (device pixels) allows; null when there
/// is no drawing of that name.
QPixmap symbolPixmap(QString const& name, QSize size, QColor const& colour);

/// The same, light with a dark edge, for backgrounds that may be light or dark.
QPixmap edgedSymbolPixmap(QString const& name, QSize size);

}
