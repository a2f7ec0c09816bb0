#pragma once

#include "Platform/Image.h"
#include "Platform/Log.h"

#include <QIcon>

namespace marrowick {

/// The pixels of `image`, found when they are painted and never before: making the icon reads no file. It paints at any
/// device pixel ratio; a system symbol takes the colour of the palette's text.
QIcon iconFor(Image const& image);

/// The same for a place whose background the program cannot know, as a panel's: a system symbol is light with a dark
/// edge there.
QIcon panelIconFor(Image const& image);

/// Gives all windows of the program its own icon, the one that the status area shows.
void prepareWindowIcon();

/// Makes sure that icons are found where the desktop names no icon theme, or one that is not installed. Without any icon
/// theme `log` says so in one line, and files show the program's own drawings.
void prepareIconTheme(Log& log);

}
