#include "FileManagers/Host/Host.h"

// Some of these headers do not say that they are C.
extern "C" {
#include <thunarx/thunarx.h>
}

namespace marrowick::companion {

namespace {

gboolean load(GTypeModule*)
{
    return TRUE;
}

void initializeClass(void* moduleClass, void*)
{
    static_cast<GTypeModuleClass*>(moduleClass)->load = load;
}

GType registerType(
    ThunarxProviderPlugin* plugin, GType parent, gchar const* name, GTypeInfo const* info, GTypeFlags flags)
{
    return g_type_module_register_type(G_TYPE_MODULE(plugin), parent, name, info, flags);
}

void addInterface(ThunarxProviderPlugin* plugin, GType instance, GType interface, GInterfaceInfo const* info)
{
    g_type_module_add_interface(G_TYPE_MODULE(plugin), instance, interface, info);
}

void implementPlugin(void* interface, void*)
{
    auto& plugin = *static_cast<ThunarxProviderPluginIface*>(interface);
    plugin.get_resident = [](ThunarxProviderPlugin const*) -> gboolean { return TRUE; };
    plugin.set_resident = [](ThunarxProviderPlugin*, gboolean) {};
    plugin.register_type = registerType;
    plugin.add_interface = addInterface;
}

}

GTypeModule* makeModule()
{
    static GType const type = [] {
        auto const registered = g_type_register_static_simple(G_TYPE_TYPE_MODULE, "TestModule",
            sizeof(GTypeModuleClass), initializeClass, sizeof(GTypeModule), nullptr, static_cast<GTypeFlags>(0));
        GInterfaceInfo const plugin { implementPlugin, nullptr, nullptr };
        g_type_add_interface_static(registered, THUNARX_TYPE_PROVIDER_PLUGIN, &plugin);
        return registered;
    }();
    auto* const module = static_cast<GTypeModule*>(g_object_new(type, nullptr));
    g_type_module_use(module);
    return module;
}

}
