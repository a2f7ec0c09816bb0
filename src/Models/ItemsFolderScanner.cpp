#include "Models/ItemsFolderScanner.h"

#include "Platform/Platform.h"
#include "Support/Characters.h"
#include "Support/IconLoader.h"
#include "Support/NamingSuffix.h"
#include "Support/Preferences.h"

#include <string_view>
#include <utility>

namespace marrowick {

namespace {

using Entry = ItemsFolderScanner::Entry;

/// The settings that one scan reads.
struct TitleRules {
    bool tossDotApp;
    bool tossDotScpt;
};

/// Takes a prefix like "01)" off `name`: two characters, neither of them "(", before a ")" that something follows.
std::optional<std::string> takeSortPrefix(std::string_view& name)
{
    auto rest = name;
    for (int position = 0; position < 2; ++position) {
        if (rest.empty() || rest.front() == '(')
            return std::nullopt;
        rest.remove_prefix(firstCharacterLength(rest));
    }
    if (rest.size() < 2 || rest.front() != ')')
        return std::nullopt;
    std::string prefix(name.substr(0, name.size() - rest.size()));
    name = rest.substr(1);
    return prefix;
}

bool meetsCondition(AppConditional const& condition, MenuContext const& context)
{
    if (!context.frontmostBundleID)
        return condition.negated;
    return platform().collation->containsCaseInsensitively(*context.frontmostBundleID, condition.identifierFragment)
        != condition.negated;
}

bool isHiddenByCodes(SuffixCodes codes, MenuContext const& context)
{
    bool const hasSelection = !context.finderSelection.empty();
    return (codes.contains(SuffixCodes::needsFinderSelection) && !hasSelection)
        || (codes.contains(SuffixCodes::needsNoFinderSelection) && hasSelection)
        || (codes.contains(SuffixCodes::needsTextSelection) && !context.hasTextSelection)
        || (codes.contains(SuffixCodes::copyTemplate) && hasSelection);
}

/// The kind of an entry whose codes alone say what it is.
std::optional<MenuNodeKind> kindFromCodes(SuffixCodes codes)
{
    if (codes.contains(SuffixCodes::divider))
        return MenuNodeKind::divider();
    if (codes.contains(SuffixCodes::allApps))
        return MenuNodeKind::allAppsSubmenu();
    if (codes.contains(SuffixCodes::desktop))
        return MenuNodeKind::desktopSubmenu();
    if (codes.contains(SuffixCodes::processes))
        return MenuNodeKind::processesSubmenu();
    if (codes.contains(SuffixCodes::prefPanes))
        return MenuNodeKind::prefPanesSubmenu();
    if (codes.contains(SuffixCodes::recentItems))
        return MenuNodeKind::recentItemsSubmenu();
    return std::nullopt;
}

bool isFolderItself(FileURL const& url, ResourceValues const& values)
{
    if (!values.isDirectory.value_or(false))
        return false;
    return !(values.isApplication ? *values.isApplication : IconLoader::isPackageOrApp(url));
}

/// Whether the item is shown as a submenu; an alias is what it leads to.
bool isFolder(ListedItem const& item)
{
    if (!item.values.isAliasFile.value_or(false))
        return isFolderItself(item.url, item.values);
    // The listing tells what most aliases lead to, so that the way there need not be found.
    if (item.values.aliasTargetIsDirectory == false)
        return false;
    if (item.values.aliasTargetIsDirectory && item.values.isApplication)
        return !*item.values.isApplication;
    auto const& fileManager = *platform().fileManager;
    auto const resolved = fileManager.resolvingAlias(item.url);
    auto const& target = resolved ? resolved.value() : item.url;
    return isFolderItself(target, fileManager.resourceValues(target, ResourceKey::isDirectory));
}

void trimTitle(std::string& title, TitleRules rules)
{
    if (rules.tossDotApp && title.ends_with(".app"))
        title.resize(title.size() - 4);
    if (rules.tossDotScpt && title.ends_with(".scpt"))
        title.resize(title.size() - 5);
}

MenuNodeKind fileKind(ListedItem& item, SuffixCodes codes)
{
    if (codes.contains(SuffixCodes::copyTemplate))
        return MenuNodeKind::copyTemplateFolder(std::move(item.url));
    if (isFolder(item))
        return MenuNodeKind::folder(std::move(item.url));
    return MenuNodeKind::file(std::move(item.url));
}

/// Appends the entry of one item, unless the situation hides it.
void appendEntry(std::vector<Entry>& entries, ListedItem& item, MenuContext const& context, TitleRules rules)
{
    auto name = item.url.lastPathComponent();
    auto sortPrefix = takeSortPrefix(name);
    auto parsed = NamingSuffix::parse(name);
    if (parsed.appConditional && !meetsCondition(*parsed.appConditional, context))
        return;
    if (isHiddenByCodes(parsed.codes, context))
        return;

    auto kind = kindFromCodes(parsed.codes);
    if (!kind) {
        trimTitle(parsed.displayName, rules);
        kind = fileKind(item, parsed.codes);
    } else if (kind->is(MenuNodeKind::Case::divider)) {
        parsed.displayName.clear();
    }
    entries.push_back(
        { { std::move(*kind), std::move(parsed.displayName), parsed.codes, std::move(parsed.appConditional) },
            std::move(sortPrefix), item.values.contentModificationDate });
}

ResourceKeys keysForListing()
{
    auto keys = ResourceKey::isDirectory | ResourceKey::isAliasFile | ResourceKey::aliasTargetIsDirectory
        | ResourceKey::directoryIsApplication;
    if (Preferences::shared().sortMode() == SortMode::dateModified)
        keys = keys | ResourceKey::contentModificationDate;
    return keys;
}

/// The entries that the folder shows, in listing order.
std::vector<Entry> listedEntries(FileURL const& folder, MenuContext const& context)
{
    auto listing = platform().fileManager->contentsOfDirectory(folder, keysForListing(), HiddenItems::skipped);
    if (!listing)
        return {};
    TitleRules const rules { Preferences::shared().tossDotAppExtension(),
        Preferences::shared().tossDotScptExtension() };
    std::vector<Entry> entries;
    entries.reserve(listing.value().size());
    for (auto& item : listing.value())
        appendEntry(entries, item, context, rules);
    return entries;
}

}

std::vector<MenuNode> ItemsFolderScanner::children(FileURL const& of, MenuContext const& context, bool)
{
    auto entries = listedEntries(of, context);
    applyExplicitOrder(entries, of);
    sort(entries, of);

    std::vector<MenuNode> nodes;
    nodes.reserve(entries.size());
    for (auto& entry : entries)
        nodes.push_back(std::move(entry.node));
    return nodes;
}

}
