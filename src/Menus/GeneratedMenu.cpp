#include "Menus/GeneratedMenu.h"

#include "Menus/MenuBuilder.h"

#include <utility>

namespace marrowick {

std::shared_ptr<MWMenu> makeGeneratedMenu(std::string title, std::function<std::vector<MenuNode>()> nodes)
{
    auto menu = MWMenu::make(std::move(title));
    menu->refresh = [weakMenu = std::weak_ptr(menu), nodes = std::move(nodes)] {
        auto const self = weakMenu.lock();
        if (!self)
            return;
        self->removeAllItems();
        auto const context = MenuContext::capture();
        MenuBuilder::populate(*self, nodes(), context);
    };
    return menu;
}

}
