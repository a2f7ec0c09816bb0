// The companion inside Nemo: a menu provider that also answers what the windows show.

#include "Gtk3/Windows.h"
#include "Nemo/Selection.h"
#include "Shared/Companion.h"
#include "Shared/GLib.h"
#include "Shared/Guarded.h"
#include "Shared/MenuRefresh.h"
#include "Shared/ModuleMenus.h"
#include "Shared/ProviderType.h"
#include "Shared/Report.h"

#include <libnemo-extension/nemo-file-info.h>
#include <libnemo-extension/nemo-location-widget-provider.h>
#include <libnemo-extension/nemo-menu-provider.h>

#include <array>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace marrowick::companion;

/// A slot is what a tab shows; of each pane's slots the one in front is on the screen.
constexpr WindowNames names { "Nemo", "NemoWindow", "NemoWindowSlot" };

/// Under this name a location widget keeps the folder that it was made for.
constexpr char const* folderKey = "marrowick-folder";

struct NemoMenus {
    using Item = NemoMenuItem;
    using Menu = NemoMenu;
    static Item* makeItem(char const* name, char const* label) { return nemo_menu_item_new(name, label, "", nullptr); }
    static Menu* makeMenu() { return nemo_menu_new(); }
    static void setMenu(Item* item, Menu* menu) { nemo_menu_item_set_submenu(item, menu); }
    static void append(Menu* menu, Item* item) { nemo_menu_append_item(menu, item); }
    static char* uriOf(void* file) { return nemo_file_info_get_uri(NEMO_FILE_INFO(file)); }
};

/// Looks for the location widget that this extension made in the slot; the first one that has a folder ends the search.
void lookForFolder(GtkWidget* widget, void* result)
{
    auto& folder = *static_cast<char const**>(result);
    if (!folder)
        folder = static_cast<char const*>(g_object_get_data(G_OBJECT(widget), folderKey));
    if (!folder && GTK_IS_CONTAINER(widget))
        gtk_container_forall(GTK_CONTAINER(widget), lookForFolder, result);
}

void menusChanged(void* provider)
{
    nemo_menu_provider_emit_items_updated_signal(NEMO_MENU_PROVIDER(provider));
}

/// What lives as long as the file manager does.
struct Extension {
    Windows windows { names };
    Companion companion { "Nemo", [this] {
                             return windows.states(
                                 [this](GtkWidget* window, WindowState& state) { return fill(window, state); });
                         } };
    MenuRefresh refresh { Destinations::usersFolder(), menusChanged };

    bool fill(GtkWidget* window, WindowState& state) const
    {
        auto* const slot = windows.activeView(window);
        char const* folder = nullptr;
        if (slot)
            lookForFolder(slot, &folder);
        // The tab may be on its way to its first folder.
        if (!folder)
            return false;
        state.folderURI = folder;
        state.selectedURIs = selectionIn(slot, state.folderURI);
        return true;
    }
};

/// Left alone when the process ends without saying so: what it uses may be gone before it.
Extension* extension = nullptr;

GList* fileItems(NemoMenuProvider* provider, GtkWidget*, GList* files)
{
    return menuItems<NemoMenus>(extension, provider, files);
}

void implementMenus(void* interface, void*)
{
    static_cast<NemoMenuProviderIface*>(interface)->get_file_items = fileItems;
}

/// Asked for each time a tab goes to another folder, and put above what the tab shows until it goes to the next: a widget
/// that takes no room and says which folder it is.
GtkWidget* locationWidget(NemoLocationWidgetProvider*, char const* uri, GtkWidget*)
{
    auto* const widget = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    g_object_set_data_full(G_OBJECT(widget), folderKey, g_strdup(uri), g_free);
    return widget;
}

void implementLocations(void* interface, void*)
{
    static_cast<NemoLocationWidgetProviderIface*>(interface)->get_widget = locationWidget;
}

std::array<GType, 1> providerTypes {};

}

extern "C" {

G_MODULE_EXPORT void nemo_module_initialize(GTypeModule* module);
G_MODULE_EXPORT void nemo_module_shutdown();
G_MODULE_EXPORT void nemo_module_list_types(GType const** types, int* count);

void nemo_module_initialize(GTypeModule* module)
{
    // Its types and the calls that wait on the bus point into this library.
    g_type_module_use(module);
    providerTypes[0] = registerProvider(module, "MarrowickNemoProvider",
        {
            { NEMO_TYPE_MENU_PROVIDER, implementMenus },
            { NEMO_TYPE_LOCATION_WIDGET_PROVIDER, implementLocations },
        });
    guarded([] { extension = new Extension; });
}

void nemo_module_shutdown()
{
    guarded([] { delete std::exchange(extension, nullptr); });
}

void nemo_module_list_types(GType const** types, int* count)
{
    *types = providerTypes.data();
    *count = static_cast<int>(providerTypes.size());
}
}
