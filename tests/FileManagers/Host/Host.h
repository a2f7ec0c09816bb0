#pragma once

#include <glib-object.h>

namespace marrowick::companion {

// What a file manager has for its extensions and its windows: each file manager's test is built with the parts that it needs.

void startToolkit();

/// Shows a window of this type, which is made when there is none of the name yet.
void showWindow(char const* typeName);

/// What a file manager hands to an extension that it loads.
GTypeModule* makeModule();

}
