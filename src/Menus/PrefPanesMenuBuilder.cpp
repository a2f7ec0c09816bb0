#include "Menus/PrefPanesMenuBuilder.h"

#include "Menus/GeneratedMenu.h"
#include "Menus/InstalledItems.h"
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
    return makeGeneratedMenu("Preference Panes", [] { return nodesInOrder(panes()); });
}

}
