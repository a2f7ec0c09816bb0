#include "Menus/MenuBuilder.h"

#include "Menus/MWMenuTarget.h"
#include "Menus/SpecialSubmenu.h"
#include "Models/ItemsFolderScanner.h"
#include "Platform/Platform.h"
#include "Support/FolderChain.h"
#include "Support/Preferences.h"

#include <algorithm>
#include <utility>

namespace marrowick {

namespace {

constexpr int iconSize = 16;

std::string titleOf(MenuNode const& node)
{
    if (!node.displayName.empty())
        return node.displayName;
    switch (node.kind.value()) {
    case MenuNodeKind::Case::allAppsSubmenu:
        return "All Applications";
    case MenuNodeKind::Case::desktopSubmenu:
        return "Desktop";
    case MenuNodeKind::Case::processesSubmenu:
        return "Processes";
    case MenuNodeKind::Case::prefPanesSubmenu:
        return "Preference Panes";
    case MenuNodeKind::Case::recentItemsSubmenu:
        return "Recent Items";
    case MenuNodeKind::Case::file:
    case MenuNodeKind::Case::folder:
    case MenuNodeKind::Case::copyTemplateFolder:
    case MenuNodeKind::Case::divider:
        break;
    }
    return "Untitled";
}

/// Null for the kinds of entry that are chosen themselves.
std::shared_ptr<Menu> submenuOf(
    MenuNode const& node, MenuContext const& context, std::optional<FileURL> const& copyDestination)
{
    switch (node.kind.value()) {
    case MenuNodeKind::Case::file:
    case MenuNodeKind::Case::divider:
        return nullptr;
    case MenuNodeKind::Case::folder:
        if (node.codes.contains(SuffixCodes::noSubmenu))
            return nullptr;
        return MenuBuilder::buildItemsMenu("", *node.kind.url(), copyDestination);
    case MenuNodeKind::Case::copyTemplateFolder:
        return MenuBuilder::buildItemsMenu("", *node.kind.url(), context.copyDestinationFolder);
    case MenuNodeKind::Case::allAppsSubmenu:
    case MenuNodeKind::Case::desktopSubmenu:
    case MenuNodeKind::Case::processesSubmenu:
    case MenuNodeKind::Case::prefPanesSubmenu:
    case MenuNodeKind::Case::recentItemsSubmenu:
        return makeSpecialSubmenu(node.kind.value());
    }
    return nullptr;
}

/// Fills a menu from nodes, and remembers the folders on the way down, so that an inline folder that leads back to one
/// of them ends.
class Filling {
public:
    Filling(MWMenu& menu, MenuContext const& context)
        : menu_(menu)
        , context_(context)
    {
    }

    /// Stands for the folder whose contents are being appended; false when it is being appended further up already.
    bool enter(FileURL const& folder) { return chain_.enter(folder); }

    void append(std::vector<MenuNode> const& nodes)
    {
        for (auto const& node : nodes) {
            if (node.kind.is(MenuNodeKind::Case::divider))
                menu_.addItem(MenuItem::makeSeparator());
            else if (node.kind.is(MenuNodeKind::Case::folder) && node.codes.contains(SuffixCodes::inlineFolder))
                appendContents(*node.kind.url());
            else
                menu_.addItem(MenuBuilder::makeMenuItem(node, context_, menu_.copyDestination));
        }
        if (menu_.items().empty() && !Preferences::shared().ignoreEmptyItemsFolder())
            appendEmptyEntry();
    }

private:
    void appendContents(FileURL const& folder)
    {
        if (!enter(folder))
            return;
        append(ItemsFolderScanner::children(folder, context_, false));
        chain_.leave();
    }

    void appendEmptyEntry()
    {
        auto item = MenuItem::make("(Empty — drag items into this folder)");
        item->isEnabled = false;
        menu_.addItem(std::move(item));
    }

    MWMenu& menu_;
    MenuContext const& context_;
    FolderChain chain_;
};

}

std::shared_ptr<MWMenu> MenuBuilder::buildItemsMenu(
    std::string title, FileURL folder, std::optional<FileURL> copyDestination)
{
    auto menu = MWMenu::make(std::move(title));
    menu->copyDestination = std::move(copyDestination);
    menu->refresh = [weakMenu = std::weak_ptr(menu), folder = std::move(folder)] {
        auto const self = weakMenu.lock();
        if (!self)
            return;
        self->removeAllItems();
        auto const context = MenuContext::capture();
        auto const nodes = ItemsFolderScanner::children(folder, context, true);
        Filling filling(*self, context);
        filling.enter(folder);
        filling.append(nodes);
    };
    return menu;
}

void MenuBuilder::populate(MWMenu& menu, std::vector<MenuNode> const& with, MenuContext const& context)
{
    Filling(menu, context).append(with);
}

std::shared_ptr<MenuItem> MenuBuilder::makeMenuItem(
    MenuNode const& node, MenuContext const& context, std::optional<FileURL> const& copyDestination)
{
    auto item = MenuItem::make(titleOf(node), [](MenuItem& sender) { MWMenuTarget::shared().chooseItem(sender); });
    item->representedObject = node;
    if (!node.codes.contains(SuffixCodes::noIcon))
        item->image = icon(node);
    if (auto submenu = submenuOf(node, context, copyDestination)) {
        item->setSubmenu(std::move(submenu));
        item->action = nullptr;
    }
    return item;
}

std::optional<Image> MenuBuilder::icon(MenuNode const& node)
{
    switch (node.kind.value()) {
    case MenuNodeKind::Case::file:
    case MenuNodeKind::Case::folder:
    case MenuNodeKind::Case::copyTemplateFolder:
        return Image::iconForFile(*node.kind.url(), iconSize);
    case MenuNodeKind::Case::allAppsSubmenu:
        return Image::systemSymbol("square.grid.2x2");
    case MenuNodeKind::Case::desktopSubmenu:
        return Image::systemSymbol("menubar.dock.rectangle");
    case MenuNodeKind::Case::processesSubmenu:
        return Image::systemSymbol("square.stack.3d.up");
    case MenuNodeKind::Case::prefPanesSubmenu:
        return Image::systemSymbol("gearshape");
    case MenuNodeKind::Case::recentItemsSubmenu:
        return Image::systemSymbol("clock");
    case MenuNodeKind::Case::divider:
        break;
    }
    return std::nullopt;
}

}
