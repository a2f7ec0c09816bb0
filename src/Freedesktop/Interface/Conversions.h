#pragma once

#include "Platform/FileURL.h"
#include "Platform/Geometry.h"

#include <QByteArray>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>

#include <string>
#include <string_view>

namespace marrowick {

// The one place where the core's texts, paths and rectangles become Qt's, and the other way round.

/// `text` as it may be shown: bytes that are no UTF-8 become U+FFFD, control characters and line ends their visible
/// pictures, and characters that turn the writing direction of what follows become U+FFFD. Nothing in it can break a
/// line, hide a part, or be read as markup of a menu's columns.
QString displayText(std::string_view text);

/// As `displayText`, but the line feeds of `text` stay.
QString displayLines(std::string_view text);

/// Makes every `&` of a displayed text stand for itself where Qt would underline the next letter.
QString withoutMnemonics(QString text);

/// `displayText` for a menu's or a button's title.
QString titleText(std::string_view text);

/// `text` for tool tips and other places that would take markup in it for markup: shown as it stands, with line breaks
/// only where it is too wide.
QString plainAsRichText(QString const& text);

/// The exact characters, for text that is edited or handed to another program; bytes that are no UTF-8 become U+FFFD.
QString exactText(std::string_view text);
std::string utf8From(QString const& text);

/// The exact bytes of a path, for system calls and GIO.
QByteArray pathBytes(FileURL const& url);
FileURL fileURLFrom(QByteArray const& pathBytes);

Rect rectFrom(QRect const& rect);
Size sizeFrom(QSize const& size);
QPoint pointFrom(Point point);

}
