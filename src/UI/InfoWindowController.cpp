#include "UI/InfoWindowController.h"

#include "Platform/SharedObjects.h"

namespace marrowick {

InfoWindowController& InfoWindowController::shared()
{
    return sharedObject<InfoWindowController>();
}

void InfoWindowController::show(FileURL const&) { }

}
