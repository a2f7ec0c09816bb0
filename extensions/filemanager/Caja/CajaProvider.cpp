// The companion inside Caja: a menu provider that also answers what the windows show.

#include "Gtk3/Windows.h"
#include "Shared/Companion.h"
#include "Shared/GLib.h"
#include "Shared/Guarded.h"
#include "Shared/Locations.h"
#include "Shared/MenuRefresh.h"
#include "Shared/ModuleMenus.h"
#include "Shared/ProviderType.h"
#include "Shared/Report.h"

#include <dlfcn.h>
#include <libcaja-extension/caja-file-info.h>
#include <libcaja-extension/caja-menu-provider.h>

#include <array>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace marrowick::companion;

constexpr WindowNames names { "Caja", "CajaWindow" };

struct CajaMenus {
    using Item = CajaMenuItem;
    using Menu = CajaMenu;
    static Item* makeItem(char const* name, char const* label) { return caja_menu_item_new(name, label, "", nullptr); }
    static Menu* makeMenu() { return caja_menu_new(); }
    static void setMenu(Item* item, Menu* menu) { caja_menu_item_set_submenu(item, menu); }
    static void append(Menu* menu, Item* item) { caja_menu_append_item(menu, item); }
    static char* uriOf(void* file) { return caja_file_info_get_uri(CAJA_FILE_INFO(file)); }
};

/// Functions of the program itself, which it exports although it says so nowhere. They tell of the active one of a
/// window's tabs and panes.
struct WindowFunctions {
    char* (*location)(void* window) = nullptr;
    /// The locations of what is selected, which the caller owns.
    GList* (*selection)(void* window) = nullptr;

    static WindowFunctions find()
    {
        return {
            reinterpret_cast<char* (*)(void*)>(dlsym(RTLD_DEFAULT, "caja_window_info_get_current_location")),
            reinterpret_cast<GList* (*)(void*)>(dlsym(RTLD_DEFAULT, "caja_window_info_get_selection")),
        };
    }
};

void menusChanged(void* provider)
{
    caja_menu_provider_emit_items_updated_signal(CAJA_MENU_PROVIDER(provider));
}

/// What lives as long as the file manager does.
struct Extension {
    Windows windows { names };
    WindowFunctions functions = WindowFunctions::find();
    Companion companion { "Caja", [this] {
                             return windows.states(
                                 [this](GtkWidget* window, WindowState& state) { return fill(window, state); });
                         } };
    MenuRefresh refresh { Destinations::usersFolder(), menusChanged };

    bool fill(GtkWidget* window, WindowState& state) const
    {
        if (!functions.location || !functions.selection) {
            reportUnreadable(names.fileManager, "function caja_window_info_get_selection");
            return false;
        }
        // The window may be on its way to its first folder.
        state.folderURI = folderURI(taken(functions.location(window)));
        if (state.folderURI.empty())
            return false;
        GList* const selected = functions.selection(window);
        for (GList* link = selected; link; link = link->next) {
            if (G_IS_FILE(link->data))
                state.selectedURIs.push_back(taken(g_file_get_uri(G_FILE(link->data))));
        }
        g_list_free_full(selected, g_object_unref);
        return true;
    }
};

/// Left alone when the process ends without saying so: what it uses may be gone before it.
Extension* extension = nullptr;

GList* fileItems(CajaMenuProvider* provider, GtkWidget*, GList* files)
{
    return menuItems<CajaMenus>(extension, provider, files);
}

void implementMenus(void* interface, void*)
{
    static_cast<CajaMenuProviderIface*>(interface)->get_file_items = fileItems;
}

std::array<GType, 1> providerTypes {};

}

extern "C" {

G_MODULE_EXPORT void caja_module_initialize(GTypeModule* module);
G_MODULE_EXPORT void caja_module_shutdown();
G_MODULE_EXPORT void caja_module_list_types(GType const** types, int* count);

void caja_module_initialize(GTypeModule* module)
{
    // Its types and the calls that wait on the bus point into this library.
    g_type_module_use(module);
    providerTypes[0]
        = registerProvider(module, "MarrowickCajaProvider", { { CAJA_TYPE_MENU_PROVIDER, implementMenus } });
    guarded([] { extension = new Extension; });
}

void caja_module_shutdown()
{
    guarded([] { delete std::exchange(extension, nullptr); });
}

void caja_module_list_types(GType const** types, int* count)
{
    *types = providerTypes.data();
    *count = static_cast<int>(providerTypes.size());
}
}
