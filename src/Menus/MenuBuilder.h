#pragma once

#include "Menus/MWMenu.h"
#include "Models/MenuContext.h"
#include "Models/MenuNode.h"
#include "Platform/FileURL.h"
#include "Platform/Image.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace marrowick {

/// Turns nodes into entries. Every menu it makes is empty and fills itself when it opens. Main thread only.
class MenuBuilder {
public:
    /// A menu of the contents of `folder`. Entries chosen from it are copied to `copyDestination` where there is one.
    static std::shared_ptr<MWMenu> buildItemsMenu(
        std::string title, FileURL folder, std::optional<FileURL> copyDestination);

    /// Appends the entries of `nodes`, the contents of inline folders in the place of the folders. A menu that is still
    /// empty then gets a disabled entry that says so, unless the user does not want it.
    static void populate(MWMenu& menu, std::vector<MenuNode> const& with, MenuContext const& context);

    static std::shared_ptr<MenuItem> makeMenuItem(
        MenuNode const& node, MenuContext const& context, std::optional<FileURL> const& copyDestination);

    /// What stands beside the entry's title; absent for a divider.
    static std::optional<Image> icon(MenuNode const& node);
};

}
