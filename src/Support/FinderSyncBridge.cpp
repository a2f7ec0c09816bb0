#include "Support/FinderSyncBridge.h"

#include "Platform/SharedObjects.h"

namespace marrowick {

FinderSyncBridge& FinderSyncBridge::shared()
{
    return sharedObject<FinderSyncBridge>();
}

void FinderSyncBridge::start() { }

}
