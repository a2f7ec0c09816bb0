#pragma once

#include "Platform/FileURL.h"

namespace marrowick {

/// Tells which items are opened as applications.
class IconLoader {
public:
    /// Whether the item is an application. Other bundles (documents, plug-ins) are not, whatever the name suggests.
    /// Where the desktop cannot tell, the extension "app" decides.
    static bool isPackageOrApp(FileURL const& url);
};

}
