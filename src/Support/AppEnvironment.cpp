#include "Support/AppEnvironment.h"

#include "Models/MenuContext.h"
#include "Platform/Platform.h"
#include "Platform/SharedObjects.h"
#include "Support/FinderBridge.h"

#include <algorithm>

namespace marrowick {

namespace {

/// By identifier alone: two programs without one count as the same.
bool isThisProgram(RunningApplication const& application)
{
    return application.bundleIdentifier() == platform().application->bundleIdentifier();
}

}

AppEnvironment& AppEnvironment::shared()
{
    return sharedObject<AppEnvironment>();
}

AppEnvironment::AppEnvironment()
{
    auto& workspace = *platform().workspace;
    activations_ = workspace.observeActivation([this](auto const& application) { appActivated(application); });
    auto const applications = workspace.runningApplications(BackgroundOnly::leftOut);
    auto const active = std::find_if(applications.begin(), applications.end(),
        [](auto const& application) { return application->isActive() && !isThisProgram(*application); });
    if (active != applications.end())
        lastFrontmostOtherApp_ = *active;
}

void AppEnvironment::appActivated(std::shared_ptr<RunningApplication> const& application)
{
    if (application && !isThisProgram(*application))
        lastFrontmostOtherApp_ = application;
}

MenuContext MenuContext::capture()
{
    MenuContext context;
    if (auto const& application = AppEnvironment::shared().lastFrontmostOtherApp())
        context.frontmostBundleID = application->bundleIdentifier();
    context.finderSelection = FinderBridge::selectedItems();
    context.copyDestinationFolder = FinderBridge::frontWindowFolder();
    return context;
}

}
