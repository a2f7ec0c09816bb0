// The companion inside Nautilus: a menu provider that also answers what the windows show.

#include "Nautilus/Windows.h"
#include "Shared/Companion.h"
#include "Shared/GLib.h"
#include "Shared/Guarded.h"
#include "Shared/MenuRefresh.h"
#include "Shared/ModuleMenus.h"
#include "Shared/ProviderType.h"

#include <gtk/gtk.h>

// These headers do not say that they are C.
extern "C" {
#include <nautilus-extension.h>
}

#include <array>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace marrowick::companion;

/// A text that nobody sees, another one each time.
std::string nextMark()
{
    static unsigned int count = 0;
    std::string mark;
    for (unsigned int bits = ++count; bits != 0; bits >>= 1)
        mark += (bits & 1) != 0 ? "\u200B" : "\u200C";
    return mark;
}

struct NautilusMenus {
    using Item = NautilusMenuItem;
    using Menu = NautilusMenu;
    static Item* makeItem(char const* name, char const* label)
    {
        return nautilus_menu_item_new(name, label, "", nullptr);
    }
    static Menu* makeMenu() { return nautilus_menu_new(); }
    static void setMenu(Item* item, Menu* menu)
    {
        // The toolkit finds the page of a submenu by the submenu's title: of two with one title it would show the first.
        char* label = nullptr;
        g_object_get(item, "label", &label, nullptr);
        g_object_set(item, "label", (taken(label) + nextMark()).c_str(), nullptr);
        nautilus_menu_item_set_submenu(item, menu);
    }
    static void append(Menu* menu, Item* item) { nautilus_menu_append_item(menu, item); }
    static char* uriOf(void* file) { return nautilus_file_info_get_uri(NAUTILUS_FILE_INFO(file)); }
};

bool fill(GtkWidget* window, WindowState& state)
{
    auto* const slot = activeSlot(window);
    if (!slot)
        return false;
    GFile* location = nullptr;
    g_object_get(slot, "location", &location, nullptr);
    ObjectOwner<GFile> const owner(location);
    if (!location)
        return false;
    state.folderURI = taken(g_file_get_uri(location));
    if (auto* const view = filesView(slot)) {
        GList* files = nullptr;
        g_object_get(view, "selection", &files, nullptr);
        for (GList* link = files; link; link = link->next) {
            if (NAUTILUS_IS_FILE_INFO(link->data))
                state.selectedURIs.push_back(taken(nautilus_file_info_get_uri(NAUTILUS_FILE_INFO(link->data))));
        }
        nautilus_file_info_list_free(files);
    }
    return true;
}

void menusChanged(void* provider)
{
    nautilus_menu_provider_emit_items_updated_signal(NAUTILUS_MENU_PROVIDER(provider));
}

/// What lives as long as the file manager does.
struct Extension {
    Companion companion { "Nautilus", [] { return windowStates(fill); } };
    MenuRefresh refresh { Destinations::usersFolder(), menusChanged };
};

/// Left alone when the process ends without saying so: what it uses may be gone before it.
Extension* extension = nullptr;

GList* fileItems(NautilusMenuProvider* provider, GList* files)
{
    return menuItems<NautilusMenus>(extension, provider, files);
}

void implementMenus(void* interface, void*)
{
    static_cast<NautilusMenuProviderInterface*>(interface)->get_file_items = fileItems;
}

std::array<GType, 1> providerTypes {};

}

extern "C" {

G_MODULE_EXPORT void nautilus_module_initialize(GTypeModule* module)
{
    // Its types and the calls that wait on the bus point into this library.
    g_type_module_use(module);
    providerTypes[0]
        = registerProvider(module, "MarrowickNautilusProvider", { { NAUTILUS_TYPE_MENU_PROVIDER, implementMenus } });
    guarded([] { extension = new Extension; });
}

G_MODULE_EXPORT void nautilus_module_shutdown()
{
    guarded([] { delete std::exchange(extension, nullptr); });
}

G_MODULE_EXPORT void nautilus_module_list_types(GType const** types, int* count)
{
    *types = providerTypes.data();
    *count = static_cast<int>(providerTypes.size());
}
}
