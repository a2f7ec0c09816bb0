#include "Fakes/DiskTest.h"

#include "Freedesktop/Files/FreedesktopFileContents.h"
#include "Freedesktop/Files/FreedesktopFileManager.h"
#include "Freedesktop/Transfer/FreedesktopFileTransfer.h"

namespace marrowick {

DiskTest::DiskTest()
    : desktop(std::make_unique<FreedesktopFileManager>(), std::make_unique<FreedesktopFileContents>(),
        std::make_unique<FreedesktopFileTransfer>())
{
    // Where the items folder would go belongs to the test as well.
    desktop.fileManager.standardDirectories[StandardDirectory::applicationSupport] = { folder / "support" };
}

}
