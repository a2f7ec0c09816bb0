#include "Shared/TransferMenu.h"

#include "Shared/Locations.h"
#include "Shared/Requests.h"

#include <glib.h>

#include <algorithm>
#include <utility>

namespace marrowick::companion {

TransferMenu::TransferMenu(std::string folder)
    : folder_(std::move(folder))
    , destinations_(folder_)
{
}

std::shared_ptr<MenuEntries const> TransferMenu::entriesFor(std::vector<std::string> const& uris)
{
    auto snapshot = destinations_.current();
    if (snapshot != snapshot_) {
        // The same folders are published again every other minute.
        bool const areSame = snapshot && snapshot_ && snapshot->roots == snapshot_->roots;
        if (!areSame)
            entries_ = snapshot ? std::make_shared<MenuEntries const>(menuFor(*snapshot)) : nullptr;
        snapshot_ = std::move(snapshot);
    }
    bool const hasEntries = entries_ && !entries_->empty()
        && std::any_of(uris.begin(), uris.end(), [](std::string const& uri) { return requestablePath(uri); });
    return hasEntries ? entries_ : nullptr;
}

void TransferMenu::choose(MenuEntry const& entry, std::vector<std::string> const& uris) const
{
    auto sources = requestablePaths(uris);
    if (sources.empty() || entry.op.empty())
        return;
    if (sources.size() < uris.size())
        g_message("Marrowick: %zu items are left out: they are not on the disk, or their names are not UTF-8",
            uris.size() - sources.size());
    if (!dropRequest(folder_, { entry.op, entry.dest, std::move(sources) }))
        g_message("Marrowick: the request could not be written to %s", folder_.c_str());
}

}
