#include "Freedesktop/Session/FreedesktopRunningApplication.h"

#include "Freedesktop/Session/ApplicationTermination.h"
#include "Freedesktop/Session/WindowActivation.h"
#include "Freedesktop/Session/WindowIcon.h"

#include <cstddef>
#include <optional>
#include <utility>

namespace marrowick {

namespace {

Image imageOf(std::optional<Bitmap> icon)
{
    return icon ? Image { std::move(*icon), 0, {}, 1 } : Image::systemSymbol("app");
}

}

void lookAtIcons(
    std::vector<ApplicationFacts>& applications, XConnection& connection, std::function<void()> const& meanwhile)
{
    std::vector<ApplicationFacts*> iconless;
    std::vector<std::vector<ClientWindow> const*> windows;
    for (auto& application : applications) {
        if (application.bundleURL)
            continue;
        iconless.push_back(&application);
        windows.push_back(&application.windows);
    }
    auto icons = iconsOfWindows(windows, connection, meanwhile);
    for (std::size_t i = 0; i < iconless.size(); ++i)
        iconless[i]->windowIcon = imageOf(std::move(icons[i]));
}

Image FreedesktopRunningApplication::icon() const
{
    if (facts_.bundleURL)
        return Image::iconForFile(*facts_.bundleURL, 0);
    if (facts_.windowIcon)
        return *facts_.windowIcon;
    return imageOf(std::move(iconsOfWindows({ &facts_.windows }, *connection_).front()));
}

void FreedesktopRunningApplication::activate(ActivationOptions options)
{
    auto const windows = windowsOfApplication(facts_, readClientWindows(*connection_).windows);
    activateWindows(windows, options, *connection_);
}

void FreedesktopRunningApplication::terminate()
{
    askToTerminate(facts_, *connection_);
}

void FreedesktopRunningApplication::forceTerminate()
{
    forceTermination(facts_, *connection_);
}

}
