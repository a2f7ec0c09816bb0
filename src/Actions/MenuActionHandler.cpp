#include "Actions/MenuActionHandler.h"

#include "Actions/ScriptRunner.h"
#include "Menus/MainThreadOnlyBox.h"
#include "Platform/Platform.h"
#include "Support/FinderBridge.h"
#include "Support/IconLoader.h"
#include "Support/Preferences.h"
#include "UI/InfoWindowController.h"
#include "UI/QuickLookController.h"

#include <any>
#include <memory>

namespace marrowick {

namespace {

bool isScript(FileURL const& url)
{
    auto const extension = url.pathExtension();
    return extension == "sh" || extension == "scpt";
}

bool isOptionHeld()
{
    auto const event = platform().events->currentEvent();
    return event && event->flags.contains(modifier::option);
}

void showForEditing(FileURL const& script)
{
    platform().workspace->open(script.deletingLastPathComponent());
    platform().workspace->selectFile(script);
    MenuActionHandler::openForEditing(script);
}

}

void MenuActionHandler::choose(
    MenuNode const& node, MenuContext const& context, std::optional<FileURL> const& copyDestination)
{
    auto const* url = node.kind.url();
    if (!url)
        return;
    if (copyDestination) {
        performCopy(*url, *copyDestination, TransferMode::copy);
        return;
    }
    switch (node.kind.value()) {
    case MenuNodeKind::Case::folder:
        if (context.finderSelection.empty())
            platform().workspace->open(*url);
        else
            presentMoveCopyAliasDialog(context.finderSelection, *url);
        break;
    case MenuNodeKind::Case::file:
        chooseFile(*url, context);
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

void MenuActionHandler::chooseFile(FileURL const& url, MenuContext const& context)
{
    if (isScript(url) && Preferences::shared().runScriptFiles()) {
        if (isOptionHeld())
            showForEditing(url);
        else
            ScriptRunner::run(url, context.finderSelection, context.copyDestinationFolder);
    } else if (!context.finderSelection.empty() && IconLoader::isPackageOrApp(url)) {
        platform().workspace->open(context.finderSelection, url);
    } else {
        platform().workspace->open(url);
    }
}

void MenuActionHandler::performModifier(ModifierAction action, MainThreadOnlyBox const& on)
{
    if (auto const* node = std::any_cast<MenuNode>(&on.value)) {
        if (auto const* url = node->kind.url())
            performOnFile(action, *url);
    } else if (auto const* application = std::any_cast<std::shared_ptr<RunningApplication>>(&on.value)) {
        if (*application)
            performModifier(action, **application);
    }
}

void MenuActionHandler::performModifier(ModifierAction action, std::optional<FileURL> const& url)
{
    if (url)
        performOnFile(action, *url);
}

void MenuActionHandler::performModifier(ModifierAction action, RunningApplication& onProcess)
{
    switch (action) {
    case ModifierAction::trash:
        onProcess.terminate();
        break;
    case ModifierAction::forceQuit:
        onProcess.forceTerminate();
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

void MenuActionHandler::performOnFile(ModifierAction action, FileURL const& url)
{
    switch (action) {
    case ModifierAction::reveal:
    case ModifierAction::revealAlternate:
        platform().workspace->activateFileViewerSelecting({ url });
        break;
    case ModifierAction::finderInfo:
        FinderBridge::openInformationWindow(url);
        break;
    case ModifierAction::quickLook:
    case ModifierAction::quickLookAlternate:
        QuickLookController::shared().preview(url);
        break;
    case ModifierAction::infoWindow:
        InfoWindowController::shared().show(url);
        break;
    case ModifierAction::trash:
    case ModifierAction::forceQuit:
        confirmTrash(url);
        break;
    }
}

void MenuActionHandler::confirmTrash(FileURL const& url)
{
    Alert const question {
        .style = AlertStyle::warning,
        .messageText = "Move “" + std::string(url.lastPathComponent()) + "” to the Trash?",
        .informativeText = "",
        .buttons = { "Move to Trash", "Cancel" },
    };
    if (platform().alerts->runModal(question) == 0)
        FinderBridge::moveToTrash(url);
}

void MenuActionHandler::openForEditing(FileURL const& url)
{
    if (url.pathExtension() == "sh")
        platform().workspace->open({ url }, FileURL("/System/Applications/TextEdit.app", true));
    else
        platform().workspace->open(url);
}

}
