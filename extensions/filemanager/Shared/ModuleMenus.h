#pragma once

#include "Shared/ExtensionMenu.h"
#include "Shared/GLib.h"
#include "Shared/Guarded.h"

#include <glib.h>

#include <string>
#include <utility>
#include <vector>

namespace marrowick::companion {

/// What a menu provider answers about the selected `files`, for file managers whose interfaces go back to the same one.
/// `Api` is that of `ExtensionMenu`, and tells by `uriOf(file)` a URI that the caller owns. `extension` has a `companion`
/// and a `refresh`; without it there is nothing to offer.
template<typename Api, typename Extension>
GList* menuItems(Extension* extension, void* provider, GList* files)
{
    return guarded(static_cast<GList*>(nullptr), [&]() -> GList* {
        if (!extension)
            return nullptr;
        extension->refresh.wasAsked(provider);
        std::vector<std::string> uris;
        for (GList* link = files; link; link = link->next)
            uris.push_back(taken(Api::uriOf(link->data)));
        return ExtensionMenu<Api>::make(extension->companion.menu, std::move(uris));
    });
}

}
