#include "UI/PreferencesWindowController.h"

#include "Platform/SharedObjects.h"

namespace marrowick {

PreferencesWindowController& PreferencesWindowController::shared()
{
    return sharedObject<PreferencesWindowController>();
}

void PreferencesWindowController::show() { }

}
