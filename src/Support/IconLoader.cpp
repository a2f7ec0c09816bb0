#include "Support/IconLoader.h"

#include "Platform/Platform.h"

namespace marrowick {

bool IconLoader::isPackageOrApp(FileURL const& url)
{
    auto const values = platform().fileManager->resourceValues(url, ResourceKey::isApplication);
    return values.isApplication.value_or(url.pathExtension() == "app");
}

}
