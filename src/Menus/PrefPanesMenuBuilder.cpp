#include "Menus/PrefPanesMenuBuilder.h"

#include "Menus/InstalledItems.h"
#include "Menus/MenuBuilder.h"
#include "Platform/Platform.h"
#include "Support/FinderBridge.h"

#include <string>
#include <utility>

namespace marrowick {

namespace {

std::vector<InstalledEntry> panes()
{
    std::vector<InstalledEntry> entries;
    for (auto& url : FinderBridge::installedPreferencePanes()) {
        std::string title(url.nameWithoutExtension());
        std::string name(url.lastPathComponent());
        entries.push_back({ std::move(url), std::move(title), std::move(name) });
    }
    for (auto& [url, localizedName] : platform().workspace->additionalPreferencePanes())
        entries.push_back({ std::move(url), localizedName, localizedName });
    return entries;
}

}

std::shared_ptr<MWMenu> PrefPanesMenuBuilder::build()
{
    auto menu = MWMenu::make("Preference Panes");
    menu->refresh = [weakMenu = std::weak_ptr(menu)] {
        auto const self = weakMenu.lock();
        if (!self)
            return;
        self->removeAllItems();
        auto const context = MenuContext::capture();
        MenuBuilder::populate(*self, nodesInOrder(panes()), context);
    };
    return menu;
}

}
