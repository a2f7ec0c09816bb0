#include "Fakes/DiskTest.h"

#include "Freedesktop/Files/FreedesktopFileContents.h"
#include "Freedesktop/Files/FreedesktopFileManager.h"

namespace marrowick {

DiskTest::DiskTest()
    : desktop(std::make_unique<FreedesktopFileManager>(), std::make_unique<FreedesktopFileContents>())
{
    // Where the items folder would go belongs to the test as well.
    desktop.fileManager.standardDirectories[StandardDirectory::applicationSupport] = { folder / "support" };
}

}
