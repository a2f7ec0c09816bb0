// A whole folder as the scanner reads it. An input is
//
//     settings item / item / item ... NUL order-file
//
// `settings` is one byte, of which each bit is a choice; an item is a letter for its kind and its name; without a NUL
// the folder has no order file.

#include "fuzzing/Fuzzing.h"
#include "fuzzing/OneFolder.h"

#include "Models/ItemsFolderScanner.h"
#include "Support/Characters.h"
#include "Support/PropertyList.h"

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace marrowick {

namespace {

using Kind = MenuNodeKind::Case;

struct Scan {
    std::vector<std::string> names;
    /// By its name, the place that the order file gives to an entry.
    std::map<std::string, std::size_t> order;
    MenuContext context;
    std::vector<MenuNode> nodes;
};

std::string_view nameOf(MenuNode const& node)
{
    auto const* url = node.kind.url();
    return url ? url->lastPathComponent() : std::string_view(node.displayName);
}

void checkNode(MenuNode const& node, Scan const& scan)
{
    bool const hasSelection = !scan.context.finderSelection.empty();
    bool const inPlace = std::any_of(scan.names.begin(), scan.names.end(), [&](std::string const& name) {
        return node.kind.hasURL() ? name == nameOf(node) : name.find(node.displayName) != std::string::npos;
    });
    require(inPlace, "an entry is one of the folder's items");
    require(!node.kind.hasURL() || nameOf(node).find(node.displayName) != std::string_view::npos,
        "a title is a part of its name");
    require(!isValidUTF8(nameOf(node)) || isValidUTF8(node.displayName), "a title of a UTF-8 name is UTF-8");
    require(!node.codes.contains(SuffixCodes::needsFinderSelection) || hasSelection, "hidden without a selection");
    require(!node.codes.contains(SuffixCodes::needsNoFinderSelection) || !hasSelection, "hidden with a selection");
    require(!node.codes.contains(SuffixCodes::needsTextSelection), "hidden without a selected text");
    require(!node.kind.is(Kind::copyTemplateFolder) || !hasSelection, "templates are hidden with a selection");
    require(node.kind.is(Kind::divider) == node.codes.contains(SuffixCodes::divider), "a divider's code is its kind");
    require(!node.kind.is(Kind::divider) || node.displayName.empty(), "a divider has no title");
}

void checkExplicitOrder(Scan const& scan)
{
    std::size_t last = 0;
    for (auto const& node : scan.nodes) {
        auto const found = scan.order.find(std::string(nameOf(node)));
        auto const place = found == scan.order.end() ? scan.order.size() : found->second;
        require(place >= last, "listed entries stand first, in the order file's order");
        last = place;
    }
}

void check(Scan const& scan, OneFolder const& folder)
{
    require(scan.nodes.size() <= scan.names.size(), "there are no more entries than items");
    std::set<std::string_view> shown;
    for (auto const& node : scan.nodes) {
        checkNode(node, scan);
        require(!node.kind.hasURL() || shown.insert(nameOf(node)).second, "no item is shown twice");
    }
    if (folder.orderFile)
        checkExplicitOrder(scan);
    else if (folder.sortMode == "kindThenAlphabetical") {
        require(std::is_sorted(scan.nodes.begin(), scan.nodes.end(),
                    [](MenuNode const& a, MenuNode const& b) {
                        return ItemsFolderScanner::kindRank(a) < ItemsFolderScanner::kindRank(b);
                    }),
            "kinds stand together");
    }
}

/// The places of the names in an order file; absent where it lists one twice, which ends the process by design.
std::optional<std::map<std::string, std::size_t>> placesIn(std::optional<std::string> const& orderFile)
{
    std::map<std::string, std::size_t> places;
    auto const names = orderFile ? stringArrayFromPropertyList(*orderFile) : std::nullopt;
    for (auto const& name : names.value_or(std::vector<std::string> {})) {
        if (!places.emplace(name, places.size()).second)
            return std::nullopt;
    }
    return places;
}

}

void fuzz(std::string_view input)
{
    if (input.empty())
        return;
    auto const settings = static_cast<unsigned char>(input.front());
    input.remove_prefix(1);
    auto const items = input.substr(0, input.find('\0'));
    OneFolder folder;
    folder.addItems(items);
    if (items.size() < input.size())
        folder.orderFile = std::string(input.substr(items.size() + 1));
    folder.sortMode = std::vector { "alphabetical", "kindThenAlphabetical", "dateModified", "" }[settings & 3];
    folder.tossExtensions = (settings & 4) != 0;

    Scan scan;
    if (settings & 8)
        scan.context.finderSelection.push_back(FileURL("/selected"));
    if (settings & 16)
        scan.context.frontmostBundleID = "org.example.Editor";
    auto order = placesIn(folder.orderFile);
    if (!order)
        return;
    scan.order = std::move(*order);
    for (auto const& item : folder.items)
        scan.names.emplace_back(item.url.lastPathComponent());
    PlatformScope const installed(folder.services());
    scan.nodes = ItemsFolderScanner::children(OneFolder::url(), scan.context, false);
    check(scan, folder);
}

}
