#include "Actions/MenuActionHandler.h"

#include "Menus/MainThreadOnlyBox.h"
#include "Platform/Platform.h"

#include <any>
#include <memory>

namespace marrowick {

void MenuActionHandler::choose(
    MenuNode const& node, MenuContext const& context, std::optional<FileURL> const& copyDestination)
{
    auto const* url = node.kind.url();
    if (!url || copyDestination)
        return;
    switch (node.kind.value()) {
    case MenuNodeKind::Case::folder:
        if (context.finderSelection.empty())
            platform().workspace->open(*url);
        break;
    case MenuNodeKind::Case::file:
        platform().workspace->open(*url);
        break;
    case MenuNodeKind::Case::copyTemplateFolder:
    case MenuNodeKind::Case::divider:
    case MenuNodeKind::Case::allAppsSubmenu:
    case MenuNodeKind::Case::desktopSubmenu:
    case MenuNodeKind::Case::processesSubmenu:
    case MenuNodeKind::Case::prefPanesSubmenu:
    case MenuNodeKind::Case::recentItemsSubmenu:
        break;
    }
}

void MenuActionHandler::performModifier(ModifierAction action, MainThreadOnlyBox const& on)
{
    if (auto const* node = std::any_cast<MenuNode>(&on.value)) {
        if (auto const* url = node->kind.url())
            performModifier(action, *url);
    } else if (auto const* application = std::any_cast<std::shared_ptr<RunningApplication>>(&on.value)) {
        if (*application)
            performModifier(action, **application);
    }
}

void MenuActionHandler::performModifier(ModifierAction action, std::optional<FileURL> const& url)
{
    if (url)
        performModifier(action, *url);
}

void MenuActionHandler::performModifier(ModifierAction action, RunningApplication& onProcess)
{
    switch (action) {
    case ModifierAction::trash:
    case ModifierAction::forceQuit:
        break;
    case ModifierAction::reveal:
    case ModifierAction::finderInfo:
    case ModifierAction::quickLook:
    case ModifierAction::revealAlternate:
    case ModifierAction::quickLookAlternate:
    case ModifierAction::infoWindow:
        performModifier(action, onProcess.bundleURL());
        break;
    }
}

void MenuActionHandler::performModifier(ModifierAction action, FileURL const& url)
{
    switch (action) {
    case ModifierAction::reveal:
    case ModifierAction::revealAlternate:
        platform().workspace->activateFileViewerSelecting({ url });
        break;
    case ModifierAction::trash:
    case ModifierAction::forceQuit:
    case ModifierAction::finderInfo:
    case ModifierAction::quickLook:
    case ModifierAction::quickLookAlternate:
    case ModifierAction::infoWindow:
        break;
    }
}

}
