#include "AppDelegate.h"
#include "Platform/Platform.h"

#include <memory>

int main(int argc, char** argv)
{
    using namespace marrowick;
    PlatformScope const services(makePlatform(argc, argv));
    auto& application = *platform().application;
    if (!application.claimSingleInstance())
        return 0;
    auto const delegate = std::make_shared<AppDelegate>();
    application.run([&] { delegate->applicationDidFinishLaunching(); });
    return 0;
}
