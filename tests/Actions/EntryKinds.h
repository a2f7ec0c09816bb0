#pragma once

#include "Models/MenuNode.h"

#include <optional>
#include <utility>
#include <vector>

namespace marrowick {

inline MenuNode nodeOf(MenuNodeKind kind)
{
    return { std::move(kind), "title", {}, std::nullopt };
}

inline std::vector<MenuNodeKind> kindsWithAFile(FileURL const& url)
{
    return { MenuNodeKind::file(url), MenuNodeKind::folder(url), MenuNodeKind::copyTemplateFolder(url) };
}

inline std::vector<MenuNodeKind> kindsWithoutAFile()
{
    return { MenuNodeKind::divider(), MenuNodeKind::allAppsSubmenu(), MenuNodeKind::desktopSubmenu(),
        MenuNodeKind::processesSubmenu(), MenuNodeKind::prefPanesSubmenu(), MenuNodeKind::recentItemsSubmenu() };
}

}
