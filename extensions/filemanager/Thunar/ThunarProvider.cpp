// The companion inside Thunar: a menu provider that also answers what the windows show.

#include "Gtk3/Windows.h"
#include "Shared/Companion.h"
#include "Shared/ExtensionMenu.h"
#include "Shared/GLib.h"
#include "Shared/Guarded.h"
#include "Shared/Report.h"

#include <gtk/gtk.h>

// Some of these headers do not say that they are C.
extern "C" {
#include <thunarx/thunarx.h>
}

#include <string>
#include <utility>
#include <vector>

namespace {

using namespace marrowick::companion;

constexpr WindowNames names { "Thunar", "ThunarWindow", "ThunarStandardView" };

struct ThunarMenus {
    using Item = ThunarxMenuItem;
    using Menu = ThunarxMenu;
    static Item* makeItem(char const* name, char const* label)
    {
        return thunarx_menu_item_new(name, label, nullptr, nullptr);
    }
    static Menu* makeMenu() { return thunarx_menu_new(); }
    static void setMenu(Item* item, Menu* menu) { thunarx_menu_item_set_menu(item, menu); }
    static void append(Menu* menu, Item* item) { thunarx_menu_append_item(menu, item); }
};

std::string uriOf(void* file)
{
    return file && THUNARX_IS_FILE_INFO(file) ? taken(thunarx_file_info_get_uri(THUNARX_FILE_INFO(file)))
                                              : std::string();
}

void appendSelection(GtkWidget* view, std::vector<std::string>& uris)
{
    GList* files = nullptr;
    g_object_get(view, "selected-files", &files, nullptr);
    for (GList* link = files; link; link = link->next) {
        if (auto uri = uriOf(link->data); !uri.empty())
            uris.push_back(std::move(uri));
    }
    thunarx_file_info_list_free(files);
}

/// What lives as long as the file manager does.
struct Extension {
    Windows windows { names };
    Companion companion { "Thunar", [this] {
                             return windows.states(
                                 [this](GtkWidget* window, WindowState& state) { return fill(window, state); });
                         } };

    bool fill(GtkWidget* window, WindowState& state) const
    {
        auto* const view = windows.activeView(window);
        bool const isReadable = hasProperty(window, "current-directory", G_TYPE_OBJECT)
            && (!view || hasProperty(view, "selected-files", THUNARX_TYPE_FILE_INFO_LIST));
        if (!isReadable) {
            reportUnreadable(names.fileManager, "properties \"current-directory\" and \"selected-files\"");
            return false;
        }
        GObject* directory = nullptr;
        g_object_get(window, "current-directory", &directory, nullptr);
        state.folderURI = uriOf(directory);
        g_clear_object(&directory);
        if (view)
            appendSelection(view, state.selectedURIs);
        return !state.folderURI.empty();
    }
};

/// Left alone when the process ends without saying so: what it uses may be gone before it.
Extension* extension = nullptr;

GList* fileMenuItems(ThunarxMenuProvider*, GtkWidget*, GList* files)
{
    return guarded(static_cast<GList*>(nullptr), [&]() -> GList* {
        if (!extension)
            return nullptr;
        std::vector<std::string> uris;
        for (GList* link = files; link; link = link->next)
            uris.push_back(uriOf(link->data));
        return ExtensionMenu<ThunarMenus>::make(extension->companion.menu, std::move(uris));
    });
}

void implementMenus(void* interface, void*)
{
    static_cast<ThunarxMenuProviderIface*>(interface)->get_file_menu_items = fileMenuItems;
}

GType providerType = 0;

void registerThunarProvider(ThunarxProviderPlugin* plugin)
{
    GTypeInfo const type { sizeof(GObjectClass), nullptr, nullptr, nullptr, nullptr, nullptr, sizeof(GObject), 0,
        nullptr, nullptr };
    GInterfaceInfo const menus { implementMenus, nullptr, nullptr };
    providerType = thunarx_provider_plugin_register_type(
        plugin, G_TYPE_OBJECT, "MarrowickThunarProvider", &type, static_cast<GTypeFlags>(0));
    thunarx_provider_plugin_add_interface(plugin, providerType, THUNARX_TYPE_MENU_PROVIDER, &menus);
}

}

extern "C" {

G_MODULE_EXPORT void thunar_extension_initialize(ThunarxProviderPlugin* plugin);
G_MODULE_EXPORT void thunar_extension_shutdown();
G_MODULE_EXPORT void thunar_extension_list_types(GType const** types, int* count);

void thunar_extension_initialize(ThunarxProviderPlugin* plugin)
{
    // Its types and the calls that wait on the bus point into this library.
    thunarx_provider_plugin_set_resident(plugin, TRUE);
    registerThunarProvider(plugin);
    guarded([] { extension = new Extension; });
}

void thunar_extension_shutdown()
{
    guarded([] { delete std::exchange(extension, nullptr); });
}

void thunar_extension_list_types(GType const** types, int* count)
{
    *types = &providerType;
    *count = 1;
}
}
