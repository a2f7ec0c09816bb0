#include "Menus/DesktopMenuBuilder.h"

#include "Menus/MenuBuilder.h"
#include "Models/ItemsFolderScanner.h"
#include "Platform/Platform.h"
#include "Support/FinderBridge.h"

#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace marrowick {

namespace {

MenuNode nodeOfVolume(FileURL volume)
{
    assertMainThread();
    std::string name(volume.lastPathComponent());
    return { MenuNodeKind::folder(std::move(volume)), std::move(name), {}, {} };
}

FileURL desktopFolder()
{
    auto folders = platform().fileManager->urls(StandardDirectory::desktop);
    if (folders.empty())
        fatalError("Marrowick: the user has no Desktop folder");
    return std::move(folders.front());
}

}

std::shared_ptr<MWMenu> DesktopMenuBuilder::build()
{
    auto menu = MWMenu::make("Desktop");
    menu->refresh = [weakMenu = std::weak_ptr(menu)] {
        auto const self = weakMenu.lock();
        if (!self)
            return;
        self->removeAllItems();
        auto const modifiers = platform().events->modifierFlags();
        auto const context = MenuContext::capture();
        std::vector<MenuNode> nodes;
        for (auto& volume : FinderBridge::mountedVolumes())
            nodes.push_back(nodeOfVolume(std::move(volume)));
        if (!modifiers.contains(modifier::control)) {
            nodes.push_back({ MenuNodeKind::divider(), {}, SuffixCodes::divider, {} });
            auto items = ItemsFolderScanner::children(desktopFolder(), context, true);
            std::move(items.begin(), items.end(), std::back_inserter(nodes));
        }
        MenuBuilder::populate(*self, nodes, context);
    };
    return menu;
}

}
