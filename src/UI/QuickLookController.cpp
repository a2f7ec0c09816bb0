#include "UI/QuickLookController.h"

#include "Platform/SharedObjects.h"

namespace marrowick {

QuickLookController& QuickLookController::shared()
{
    return sharedObject<QuickLookController>();
}

void QuickLookController::preview(FileURL const&) { }

}
