#include "Nautilus/Windows.h"

#include "Shared/Report.h"

#include <gdk/x11/gdkx.h>

#include <utility>

namespace marrowick::companion {

namespace {

constexpr char const* fileManager = "Nautilus";
constexpr char const* windowType = "NautilusWindow";

std::uint64_t numberOf(GtkWidget* window)
{
    auto* const surface = gtk_native_get_surface(GTK_NATIVE(window));
    if (!surface || !GDK_IS_X11_SURFACE(surface))
        return 0;
    // The library calls all of its X11 part deprecated from a later version on.
    return gdk_x11_surface_get_xid(surface);
}

GtkWidget* mappedDescendant(GtkWidget* top, GType type)
{
    if (!gtk_widget_get_mapped(top))
        return nullptr;
    if (g_type_is_a(G_OBJECT_TYPE(top), type))
        return top;
    for (auto* child = gtk_widget_get_first_child(top); child; child = gtk_widget_get_next_sibling(child)) {
        if (auto* const found = mappedDescendant(child, type))
            return found;
    }
    return nullptr;
}

bool hasProperty(GtkWidget* object, char const* name, GType type)
{
    auto const* const property = g_object_class_find_property(G_OBJECT_GET_CLASS(object), name);
    return property && (property->flags & G_PARAM_READABLE) && g_type_is_a(property->value_type, type);
}

/// The first widget on the screen of the type `typeName`, where that type has the property.
GObject* part(GtkWidget* top, char const* typeName, char const* property, GType propertyType)
{
    auto const type = g_type_from_name(typeName);
    auto* const found = type != 0 ? mappedDescendant(top, type) : nullptr;
    if (type == 0) {
        reportUnreadable(fileManager, typeName);
    } else if (found && !hasProperty(found, property, propertyType)) {
        reportUnreadable(fileManager, property);
        return nullptr;
    }
    return found ? G_OBJECT(found) : nullptr;
}

}

std::vector<WindowState> windowStates(std::function<bool(GtkWidget*, WindowState&)> const& fill)
{
    std::vector<WindowState> states;
    auto const type = g_type_from_name(windowType);
    // The application keeps its windows in the order in which they had the keyboard.
    auto* const application = g_application_get_default();
    auto* const latest = application && GTK_IS_APPLICATION(application)
        ? gtk_application_get_active_window(GTK_APPLICATION(application))
        : nullptr;
    GList* const toplevels = gtk_window_list_toplevels();
    for (GList* link = toplevels; link; link = link->next) {
        auto* const window = static_cast<GtkWidget*>(link->data);
        if (type == 0 && gtk_widget_get_mapped(window) && !GTK_IS_DIALOG(window))
            reportUnreadable(fileManager, windowType);
        if (type == 0 || !g_type_is_a(G_OBJECT_TYPE(window), type) || !gtk_widget_get_mapped(window))
            continue;
        WindowState state;
        state.window = numberOf(window);
        if (char const* const title = gtk_window_get_title(GTK_WINDOW(window)))
            state.title = title;
        state.isActive = GTK_WINDOW(window) == latest;
        if (fill(window, state))
            states.push_back(std::move(state));
    }
    g_list_free(toplevels);
    return states;
}

GObject* activeSlot(GtkWidget* window)
{
    return part(window, "NautilusWindowSlot", "location", G_TYPE_FILE);
}

GObject* filesView(GObject* slot)
{
    return part(GTK_WIDGET(slot), "NautilusFilesView", "selection", G_TYPE_POINTER);
}

}
