#include "Menus/MWProcessMenuTarget.h"

#include "Platform/Platform.h"
#include "Platform/RunningApplication.h"
#include "Platform/SharedObjects.h"
#include "UI/PreferencesWindowController.h"

#include <any>
#include <memory>

namespace marrowick {

MWProcessMenuTarget& MWProcessMenuTarget::shared()
{
    return sharedObject<MWProcessMenuTarget>();
}

void MWProcessMenuTarget::chooseProcess(MenuItem& sender)
{
    auto const* represented = std::any_cast<std::shared_ptr<RunningApplication>>(&sender.representedObject);
    if (!represented || !*represented)
        return;
    auto const application = *represented;
    auto const event = platform().events->currentEvent();
    bool const isOptionHeld = event && event->flags.contains(modifier::option);
    application->activate(isOptionHeld ? ActivationOptions::none : ActivationOptions::allWindows);
}

void MWProcessMenuTarget::openPreferences()
{
    PreferencesWindowController::shared().show();
}

}
