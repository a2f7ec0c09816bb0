#include "Menus/MWMenu.h"

#include "Actions/MenuActionHandler.h"
#include "Menus/ActionKeys.h"
#include "Menus/MainThreadOnlyBox.h"
#include "Platform/Platform.h"
#include "Support/Preferences.h"

#include <utility>

namespace marrowick {

std::shared_ptr<MWMenu> MWMenu::make(std::string title)
{
    return std::shared_ptr<MWMenu>(new MWMenu(std::move(title)));
}

MWMenu::MWMenu(std::string title)
    : Menu(std::move(title))
{
    autoenablesItems = false;
}

void MWMenu::menuNeedsUpdate(Menu&)
{
    if (refresh)
        refresh();
}

void MWMenu::willHighlight(Menu&, std::shared_ptr<MenuItem> const& item)
{
    lastHighlightedItem_ = item;
}

bool MWMenu::performKeyEquivalent(KeyEvent const& event, std::function<bool()> const& platformsOwn)
{
    assertMainThread();
    if (event.type != EventType::keyDown)
        return platformsOwn();
    auto const action = modifierActionFor(event);
    if (!action)
        return platformsOwn();

    auto const item = lastHighlightedItem();
    if (!item || !item->isEnabled || !item->representedObject.has_value())
        return true;
    MainThreadOnlyBox const box { item->representedObject };
    if (Preferences::shared().immedActionOnKeyPress())
        platform().menuPresenter->cancelTracking();
    MenuActionHandler::performModifier(*action, box);
    return true;
}

}
