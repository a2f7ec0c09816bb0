#include "FileManagers/Host/Host.h"

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

}

GTypeModule* makeModule()
{
    static GType const type = g_type_register_static_simple(G_TYPE_TYPE_MODULE, "TestModule", sizeof(GTypeModuleClass),
        initializeClass, sizeof(GTypeModule), nullptr, static_cast<GTypeFlags>(0));
    auto* const module = static_cast<GTypeModule*>(g_object_new(type, nullptr));
    g_type_module_use(module);
    return module;
}

}
