#include "Freedesktop/Session/FreedesktopRunningApplication.h"

#include "Freedesktop/Session/ApplicationTermination.h"
#include "Freedesktop/Session/WindowActivation.h"
#include "Freedesktop/Session/WindowIcon.h"

namespace marrowick {

Image FreedesktopRunningApplication::icon() const
{
    if (facts_.bundleURL)
        return Image::iconForFile(*facts_.bundleURL, 0);
    if (auto bitmap = iconOfWindows(facts_.windows, *connection_))
        return Image { std::move(*bitmap), 0, {}, 1 };
    return Image::systemSymbol("app");
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
