#pragma once

#include "Shared/Guarded.h"
#include "Shared/TransferMenu.h"

#include <glib-object.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace marrowick::companion {

/// What an entry that was shown means, for as long as the file manager keeps it. `uris` are those of the menu that it is in
/// at that moment.
struct ShownEntry {
    std::weak_ptr<TransferMenu> menu;
    std::shared_ptr<MenuEntry const> entry;
    std::shared_ptr<std::vector<std::string> const> uris;
};

/// Makes the objects of one file manager's menus. `Api` names its types and functions: `Item`, `Menu`, `makeItem(name,
/// label)`, `makeMenu()`, `setMenu(item, menu)` and `append(menu, item)`.
template<typename Api>
class ExtensionMenu {
public:
    /// The entries for the items at `uris`: a list that the caller owns, and a reference to each of its items.
    static GList* make(std::shared_ptr<TransferMenu> const& menu, std::vector<std::string>&& uris)
    {
        auto const entries = menu->entriesFor(uris);
        return menu->shownMenus().itemsFor(entries, std::move(uris), [&](auto const& made, auto const& changingURIs) {
            return ExtensionMenu(menu, made, changingURIs).items();
        });
    }

private:
    ExtensionMenu(std::weak_ptr<TransferMenu> menu, std::shared_ptr<MenuEntries const> entries,
        std::shared_ptr<std::vector<std::string> const> uris)
        : menu_(std::move(menu))
        , entries_(std::move(entries))
        , uris_(std::move(uris))
    {
    }

    GList* items() const
    {
        GList* items = nullptr;
        for (auto entry = entries_->rbegin(); entry != entries_->rend(); ++entry)
            items = g_list_prepend(items, item(*entry));
        return items;
    }

    typename Api::Item* item(MenuEntry const& entry) const
    {
        auto* const item = Api::makeItem(entry.name.c_str(), withoutMnemonics(entry.label).c_str());
        if (entry.entries.empty()) {
            // The entry lives as long as the tree that holds it.
            std::shared_ptr<MenuEntry const> const held(entries_, &entry);
            g_signal_connect_data(item, "activate", G_CALLBACK(activated), new ShownEntry { menu_, held, uris_ },
                forget, static_cast<GConnectFlags>(0));
            return item;
        }
        auto* const menu = Api::makeMenu();
        for (auto const& below : entry.entries) {
            auto* const child = this->item(below);
            Api::append(menu, child);
            g_object_unref(child);
        }
        Api::setMenu(item, menu);
        g_object_unref(menu);
        return item;
    }

    static void activated(typename Api::Item*, ShownEntry* shown)
    {
        guarded([&] {
            if (auto const menu = shown->menu.lock())
                menu->choose(*shown->entry, *shown->uris);
        });
    }

    static void forget(void* shown, GClosure*) { delete static_cast<ShownEntry*>(shown); }

    std::weak_ptr<TransferMenu> menu_;
    std::shared_ptr<MenuEntries const> entries_;
    std::shared_ptr<std::vector<std::string> const> uris_;
};

}
