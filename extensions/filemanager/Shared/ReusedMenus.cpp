#include "Shared/ReusedMenus.h"

#include <algorithm>
#include <utility>

namespace marrowick::companion {

ReusedMenus::Made::~Made()
{
    for (auto* const item : items)
        g_object_remove_toggle_ref(item, holdersChanged, this);
}

GList* ReusedMenus::itemsFor(std::shared_ptr<MenuEntries const> const& entries, URIs uris, Maker const& make)
{
    if (!entries)
        return nullptr;
    std::erase_if(made_, [&](auto const& made) { return made->heldCount == 0 && !made->isFor(entries); });
    auto const closed = std::find_if(
        made_.begin(), made_.end(), [&](auto const& made) { return made->heldCount == 0 && made->isFor(entries); });
    auto& made = closed != made_.end() ? **closed : makeFor(entries, make);
    *made.uris = std::move(uris);
    GList* items = nullptr;
    for (auto item = made.items.rbegin(); item != made.items.rend(); ++item)
        items = g_list_prepend(items, g_object_ref(*item));
    return items;
}

ReusedMenus::Made& ReusedMenus::makeFor(std::shared_ptr<MenuEntries const> const& entries, Maker const& make)
{
    auto& made = *made_.emplace_back(std::make_unique<Made>());
    made.entries = entries;
    GList* const items = make(made.entries, made.uris);
    for (GList* link = items; link; link = link->next) {
        auto* const item = G_OBJECT(link->data);
        made.items.push_back(item);
        ++made.heldCount;
        g_object_add_toggle_ref(item, holdersChanged, &made);
    }
    g_list_free_full(items, g_object_unref);
    return made;
}

void ReusedMenus::holdersChanged(void* made, GObject*, gboolean isLast)
{
    auto& count = static_cast<Made*>(made)->heldCount;
    count = isLast ? count - 1 : count + 1;
}

}
