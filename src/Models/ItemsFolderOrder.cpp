#include "Models/ItemsFolderScanner.h"

#include "Platform/Platform.h"
#include "Support/IconLoader.h"
#include "Support/MergeSort.h"
#include "Support/Preferences.h"
#include "Support/PropertyList.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace marrowick {

namespace {

using Entry = ItemsFolderScanner::Entry;
using Order = std::vector<std::size_t>;

constexpr std::size_t orderFileSizeLimit = 1 << 20;

FileURL orderFile(FileURL const& folder)
{
    return folder.appendingPathComponent(".mw-info.plist");
}

Order listingOrder(std::vector<Entry> const& entries)
{
    Order order(entries.size());
    std::iota(order.begin(), order.end(), std::size_t { 0 });
    return order;
}

/// Moves the entry at `order[i]` to position i, one cycle of places after the other: a second list of entries would
/// cost more than the moves do.
void rearrange(std::vector<Entry>& entries, Order order)
{
    for (std::size_t start = 0; start < order.size(); ++start) {
        if (order[start] == start)
            continue;
        auto displaced = std::move(entries[start]);
        auto place = start;
        while (order[place] != start) {
            entries[place] = std::move(entries[order[place]]);
            place = std::exchange(order[place], place);
        }
        entries[place] = std::move(displaced);
        order[place] = place;
    }
}

using Ranks = std::unordered_map<std::string_view, std::size_t>;

/// The position of each name, which must be unique.
Ranks ranksOf(std::vector<std::string> const& names, FileURL const& folder)
{
    Ranks ranks;
    ranks.reserve(names.size());
    for (auto const& name : names) {
        if (!ranks.emplace(name, ranks.size()).second) {
            fatalError("Marrowick: the order file of the folder " + folder.path() + " lists a name twice: " + name);
        }
    }
    return ranks;
}

/// What the order file calls the entry.
std::string_view orderKey(MenuNode const& node)
{
    if (auto const* url = node.kind.url())
        return url->lastPathComponent();
    return node.displayName;
}

Order alphabeticalOrder(std::vector<Entry> const& entries)
{
    std::vector<std::string_view> keys;
    keys.reserve(entries.size());
    for (auto const& entry : entries)
        keys.push_back(entry.sortPrefix ? *entry.sortPrefix : entry.node.displayName);
    auto const prepared = platform().collation->prepare(keys);
    auto order = listingOrder(entries);
    std::stable_sort(
        order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return prepared->compare(a, b) < 0; });
    return order;
}

Order kindThenAlphabeticalOrder(std::vector<Entry> const& entries)
{
    std::vector<int> ranks;
    std::vector<std::string_view> titles;
    ranks.reserve(entries.size());
    titles.reserve(entries.size());
    for (auto const& entry : entries) {
        ranks.push_back(ItemsFolderScanner::kindRank(entry.node));
        titles.push_back(entry.node.displayName);
    }
    auto const prepared = platform().collation->prepare(titles);
    auto order = listingOrder(entries);
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        return ranks[a] != ranks[b] ? ranks[a] < ranks[b] : prepared->compare(a, b) < 0;
    });
    return order;
}

/// The date that an entry sorts by; absent for one without a file, which sorts by none.
std::optional<FileTime> sortingDate(Entry const& entry)
{
    auto const* url = entry.node.kind.url();
    if (!url)
        return std::nullopt;
    if (entry.contentModificationDate)
        return entry.contentModificationDate;
    auto const values = platform().fileManager->resourceValues(*url, ResourceKey::contentModificationDate);
    return values.contentModificationDate.value_or(FileTime::min());
}

Order newestFirstOrder(std::vector<Entry> const& entries)
{
    std::vector<std::optional<FileTime>> dates;
    dates.reserve(entries.size());
    for (auto const& entry : entries)
        dates.push_back(sortingDate(entry));
    auto order = listingOrder(entries);
    // An entry without a date ties with every other, so this is no strict weak order.
    mergeSort(order, [&](std::size_t a, std::size_t b) { return dates[a] && dates[b] && *dates[a] > *dates[b]; });
    return order;
}

Order orderBy(SortMode mode, std::vector<Entry> const& entries)
{
    switch (mode) {
    case SortMode::alphabetical:
        return alphabeticalOrder(entries);
    case SortMode::kindThenAlphabetical:
        return kindThenAlphabeticalOrder(entries);
    case SortMode::dateModified:
        return newestFirstOrder(entries);
    }
    return listingOrder(entries);
}

}

void ItemsFolderScanner::applyExplicitOrder(std::vector<Entry>& entries, FileURL const& folder)
{
    auto const bytes = platform().fileContents->read(orderFile(folder), orderFileSizeLimit);
    if (!bytes)
        return;
    auto const names = stringArrayFromPropertyList(bytes.value());
    if (!names)
        return;
    auto const ranks = ranksOf(*names, folder);

    std::vector<std::size_t> rankOfEntry;
    rankOfEntry.reserve(entries.size());
    for (auto const& entry : entries) {
        auto const rank = ranks.find(orderKey(entry.node));
        rankOfEntry.push_back(rank == ranks.end() ? ranks.size() : rank->second);
    }
    auto order = listingOrder(entries);
    std::stable_sort(
        order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return rankOfEntry[a] < rankOfEntry[b]; });
    rearrange(entries, std::move(order));
}

void ItemsFolderScanner::sort(std::vector<Entry>& entries, FileURL const& folder)
{
    if (platform().fileManager->fileExists(orderFile(folder)))
        return;
    rearrange(entries, orderBy(Preferences::shared().sortMode(), entries));
}

int ItemsFolderScanner::kindRank(MenuNode const& node)
{
    auto const* url = node.kind.url();
    if (!url)
        return 1;
    if (IconLoader::isPackageOrApp(*url))
        return 0;
    return node.kind.is(MenuNodeKind::Case::folder) ? 1 : 2;
}

}
