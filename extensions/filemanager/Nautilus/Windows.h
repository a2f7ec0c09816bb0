#pragma once

#include "Shared/WindowState.h"

#include <gtk/gtk.h>

#include <functional>
#include <vector>

namespace marrowick::companion {

/// What is told of each window of Nautilus, as GTK 4 knows them; those that `fill` says no to left out.
std::vector<WindowState> windowStates(std::function<bool(GtkWidget*, WindowState&)> const& fill);

/// What the window shows in its visible tab; null where this version does not say it in the way known here.
GObject* activeSlot(GtkWidget* window);
/// The view with the files in it; null as above.
GObject* filesView(GObject* slot);

}
