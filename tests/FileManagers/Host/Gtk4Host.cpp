#include "FileManagers/Host/Host.h"

#include <gtk/gtk.h>

namespace marrowick::companion {

void startToolkit()
{
    gtk_init();
}

void showWindow(char const* typeName)
{
    auto type = g_type_from_name(typeName);
    if (type == 0)
        type = g_type_register_static_simple(GTK_TYPE_WINDOW, typeName, sizeof(GtkWindowClass), nullptr,
            sizeof(GtkWindow), nullptr, static_cast<GTypeFlags>(0));
    auto* const window = static_cast<GtkWidget*>(g_object_new(type, nullptr));
    gtk_window_set_child(GTK_WINDOW(window), gtk_label_new("Another version"));
    gtk_window_present(GTK_WINDOW(window));
}

}
