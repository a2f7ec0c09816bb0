#pragma once

#include <gtk/gtk.h>

#include <string>
#include <vector>

namespace marrowick::companion {

/// The URIs of what is selected in `slot`, a tab of Nemo that shows `folder`, in the order of the view.
std::vector<std::string> selectionIn(GtkWidget* slot, std::string const& folder);

}
