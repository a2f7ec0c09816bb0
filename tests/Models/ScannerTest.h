#pragma once

#include "Fakes/DiskTest.h"
#include "Models/ItemsFolderScanner.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {

/// Scans the test's folder.
class ScannerTest : public DiskTest {
protected:
    std::vector<MenuNode> scan() const { return ItemsFolderScanner::children(folder.url(), context, false); }

    std::vector<std::string> titles() const
    {
        std::vector<std::string> result;
        for (auto& node : scan())
            result.push_back(std::move(node.displayName));
        return result;
    }

    /// The one entry of the folder.
    MenuNode only() const
    {
        auto nodes = scan();
        EXPECT_EQ(nodes.size(), 1u);
        return nodes.empty() ? MenuNode { MenuNodeKind::divider(), "nothing", {}, {} } : std::move(nodes.front());
    }

    /// The entry that a file of this name becomes; absent when it is not shown.
    std::optional<MenuNode> nodeOfFile(std::string const& name) const
    {
        folder.file(name);
        auto nodes = scan();
        folder.remove(name);
        if (nodes.empty())
            return std::nullopt;
        EXPECT_EQ(nodes.size(), 1u);
        return std::move(nodes.front());
    }

    /// The folder lists plain files of these names in this order.
    void listFiles(std::vector<std::string> const& names)
    {
        auto& listing = desktop.fileManager.listings[folder.url()];
        listing.clear();
        for (auto const& name : names) {
            ListedItem item { folder / name, {} };
            item.values.isDirectory = false;
            item.values.isAliasFile = false;
            item.values.isApplication = false;
            listing.push_back(item);
            desktop.fileManager.values[item.url] = item.values;
        }
    }

    void sortBy(char const* mode) { desktop.defaults.set("sortMode", std::string(mode)); }

    MenuContext context;
};

using Titles = std::vector<std::string>;

}
