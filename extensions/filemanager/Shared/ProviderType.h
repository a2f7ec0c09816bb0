#pragma once

#include <glib-object.h>

#include <initializer_list>

namespace marrowick::companion {

/// An interface of a file manager's extensions, and the function that puts what this one does into it.
struct ProvidedInterface {
    GType type;
    GInterfaceInitFunc implement;
};

/// A type of object that provides `interfaces`, registered in the loaded `module`.
GType registerProvider(GTypeModule* module, char const* name, std::initializer_list<ProvidedInterface> interfaces);

}
