#pragma once

#include "Shared/Destinations.h"
#include "Shared/MenuModel.h"
#include "Shared/ReusedMenus.h"

#include <memory>
#include <string>
#include <vector>

namespace marrowick::companion {

/// The context menu that puts items into the folders of the program's menu. Main thread only.
class TransferMenu {
public:
    /// `folder` is where the two programs exchange files.
    explicit TransferMenu(std::string folder);

    /// The entries for the items at `uris`, null where there are none: nothing is published, or no request could name
    /// any of the items. Made anew only when other folders were published.
    std::shared_ptr<MenuEntries const> entriesFor(std::vector<std::string> const& uris);

    /// What file managers were given to show.
    ReusedMenus& shownMenus() { return shownMenus_; }

    /// The user chose `entry` for the items at `uris`.
    void choose(MenuEntry const& entry, std::vector<std::string> const& uris) const;

private:
    std::string folder_;
    Destinations destinations_;
    /// What the entries were made from.
    std::shared_ptr<Snapshot const> snapshot_;
    std::shared_ptr<MenuEntries const> entries_;
    ReusedMenus shownMenus_;
};

}
