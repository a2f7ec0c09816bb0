#pragma once

#include "Shared/MenuModel.h"

#include <glib-object.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace marrowick::companion {

/// Gives the items of a closed menu to the next one that offers the same: some file managers never let go of a submenu that
/// they were given, with all that is in it. Main thread only.
class ReusedMenus {
public:
    using URIs = std::vector<std::string>;

    /// Makes a list of items for the entries, which the caller owns; a choice is for what is in `uris` at that moment.
    using Maker = std::function<GList*(
        std::shared_ptr<MenuEntries const> const& entries, std::shared_ptr<URIs const> const& uris)>;

    /// The entries for the items at `uris`: a list that the caller owns, and a reference to each of its items. Null for
    /// no entries.
    GList* itemsFor(std::shared_ptr<MenuEntries const> const& entries, URIs uris, Maker const& make);

private:
    /// What was made for one menu.
    struct Made {
        Made() = default;
        ~Made();
        Made(Made const&) = delete;
        Made& operator=(Made const&) = delete;

        bool isFor(std::shared_ptr<MenuEntries const> const& others) const { return entries == others; }

        std::shared_ptr<MenuEntries const> entries;
        std::shared_ptr<URIs> uris = std::make_shared<URIs>();
        std::vector<GObject*> items;
        /// How many of the items the file manager holds.
        std::size_t heldCount = 0;
    };

    static void holdersChanged(void* made, GObject* item, gboolean isLast);
    Made& makeFor(std::shared_ptr<MenuEntries const> const& entries, Maker const& make);

    std::vector<std::unique_ptr<Made>> made_;
};

}
