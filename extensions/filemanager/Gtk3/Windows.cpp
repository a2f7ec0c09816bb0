#include "Gtk3/Windows.h"

#include "Shared/Report.h"

#include <gdk/gdkx.h>

#include <utility>

namespace marrowick::companion {

namespace {

/// A view keeps under this name how many times a view had got the keyboard when it got it.
constexpr char const* focusKey = "marrowick-focus";

std::uint64_t numberOf(GtkWidget* window)
{
    auto* const surface = gtk_widget_get_window(window);
    return surface && GDK_IS_X11_WINDOW(surface) ? gdk_x11_window_get_xid(surface) : 0;
}

bool isOrdinary(GtkWidget* window)
{
    return gtk_widget_get_mapped(window) && !GTK_IS_DIALOG(window)
        && gtk_window_get_window_type(GTK_WINDOW(window)) == GTK_WINDOW_TOPLEVEL;
}

struct Search {
    GType type = 0;
    std::vector<GtkWidget*> found;
};

void lookAt(GtkWidget* widget, void* data)
{
    auto& search = *static_cast<Search*>(data);
    if (!gtk_widget_get_mapped(widget))
        return;
    if (g_type_is_a(G_OBJECT_TYPE(widget), search.type))
        search.found.push_back(widget);
    else if (GTK_IS_CONTAINER(widget))
        gtk_container_forall(GTK_CONTAINER(widget), lookAt, data);
}

}

Windows::Windows(WindowNames const& names)
    : names_(names)
{
    // The type's class makes its signals known.
    auto* const widgets = static_cast<GTypeClass*>(g_type_class_ref(GTK_TYPE_WIDGET));
    signal_ = g_signal_lookup("focus-in-event", GTK_TYPE_WIDGET);
    hook_ = g_signal_add_emission_hook(signal_, 0, focusCame, this, nullptr);
    g_type_class_unref(widgets);
}

Windows::~Windows()
{
    g_signal_remove_emission_hook(signal_, hook_);
    g_set_weak_pointer(&lastActive_, nullptr);
}

gboolean Windows::focusCame(GSignalInvocationHint*, guint count, GValue const* values, void* self)
{
    constexpr gboolean stay = TRUE;
    auto& windows = *static_cast<Windows*>(self);
    auto* const object = count > 0 ? g_value_get_object(values) : nullptr;
    if (!object || !GTK_IS_WIDGET(object))
        return stay;
    if (GTK_IS_WINDOW(object)) {
        g_set_weak_pointer(&windows.lastActive_, GTK_WINDOW(object));
        return stay;
    }
    auto const viewType = g_type_from_name(windows.names_.viewType);
    auto* const view = viewType != 0 ? gtk_widget_get_ancestor(GTK_WIDGET(object), viewType) : nullptr;
    if (view)
        g_object_set_data(G_OBJECT(view), focusKey, GSIZE_TO_POINTER(++windows.timesFocused_));
    return stay;
}

std::vector<WindowState> Windows::states(std::function<bool(GtkWidget*, WindowState&)> const& fill) const
{
    std::vector<WindowState> states;
    auto const type = g_type_from_name(names_.windowType);
    GList* const toplevels = gtk_window_list_toplevels();
    for (GList* link = toplevels; link; link = link->next) {
        auto* const window = static_cast<GtkWidget*>(link->data);
        if (type == 0 && isOrdinary(window))
            reportUnreadable(names_.fileManager, names_.windowType);
        if (type == 0 || !g_type_is_a(G_OBJECT_TYPE(window), type) || !gtk_widget_get_mapped(window))
            continue;
        WindowState state;
        state.window = numberOf(window);
        if (char const* const title = gtk_window_get_title(GTK_WINDOW(window)))
            state.title = title;
        state.isActive = GTK_WINDOW(window) == lastActive_;
        if (fill(window, state))
            states.push_back(std::move(state));
    }
    g_list_free(toplevels);
    return states;
}

GtkWidget* Windows::activeView(GtkWidget* window) const
{
    if (g_type_from_name(names_.viewType) == 0)
        reportUnreadable(names_.fileManager, names_.viewType);
    GtkWidget* active = nullptr;
    std::size_t latest = 0;
    for (auto* const view : mappedDescendants(window, names_.viewType)) {
        auto const focused = GPOINTER_TO_SIZE(g_object_get_data(G_OBJECT(view), focusKey));
        if (active && focused <= latest)
            continue;
        active = view;
        latest = focused;
    }
    return active;
}

std::vector<GtkWidget*> mappedDescendants(GtkWidget* top, char const* typeName)
{
    Search search { g_type_from_name(typeName), {} };
    if (search.type != 0)
        lookAt(top, &search);
    return std::move(search.found);
}

GtkWidget* mappedDescendant(GtkWidget* top, char const* typeName)
{
    auto const found = mappedDescendants(top, typeName);
    return found.empty() ? nullptr : found.front();
}

bool hasProperty(void* object, char const* name, GType type)
{
    auto const* const property = g_object_class_find_property(G_OBJECT_GET_CLASS(object), name);
    return property && (property->flags & G_PARAM_READABLE) && g_type_is_a(property->value_type, type);
}

}
