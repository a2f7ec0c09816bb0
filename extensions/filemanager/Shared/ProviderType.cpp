#include "Shared/ProviderType.h"

namespace marrowick::companion {

GType registerProvider(GTypeModule* module, char const* name, std::initializer_list<ProvidedInterface> interfaces)
{
    GTypeInfo const info { sizeof(GObjectClass), nullptr, nullptr, nullptr, nullptr, nullptr, sizeof(GObject), 0,
        nullptr, nullptr };
    auto const type = g_type_module_register_type(module, G_TYPE_OBJECT, name, &info, static_cast<GTypeFlags>(0));
    for (auto const& interface : interfaces) {
        GInterfaceInfo const implementation { interface.implement, nullptr, nullptr };
        g_type_module_add_interface(module, type, interface.type, &implementation);
    }
    return type;
}

}
