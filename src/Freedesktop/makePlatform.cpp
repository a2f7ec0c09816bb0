#include "Freedesktop/DeliveryGate.h"
#include "Freedesktop/Files/CollationLocale.h"
#include "Freedesktop/Files/FreedesktopCollation.h"
#include "Freedesktop/Files/FreedesktopDefaultsStore.h"
#include "Freedesktop/Files/FreedesktopFileContents.h"
#include "Freedesktop/Files/FreedesktopFileManager.h"
#include "Freedesktop/Files/FreedesktopFileTypes.h"
#include "Freedesktop/Files/FreedesktopFormats.h"
#include "Freedesktop/Files/FreedesktopLog.h"
#include "Freedesktop/Files/SystemClock.h"
#include "Freedesktop/Interface/FreedesktopAlerts.h"
#include "Freedesktop/Interface/FreedesktopApplication.h"
#include "Freedesktop/Interface/FreedesktopDispatch.h"
#include "Freedesktop/Interface/FreedesktopEvents.h"
#include "Freedesktop/Interface/FreedesktopMenuPresenter.h"
#include "Freedesktop/Interface/FreedesktopPasteboard.h"
#include "Freedesktop/Interface/FreedesktopStatusBar.h"
#include "Freedesktop/Interface/FreedesktopThumbnails.h"
#include "Freedesktop/Interface/FreedesktopWindows.h"
#include "Freedesktop/Interface/Icons.h"
#include "Freedesktop/Session/FreedesktopScriptingBridge.h"
#include "Freedesktop/Session/FreedesktopTasks.h"
#include "Freedesktop/Session/FreedesktopWorkspace.h"
#include "Freedesktop/Session/XConnection.h"
#include "Freedesktop/Transfer/FreedesktopFileTransfer.h"
#include "Platform/Platform.h"

#include <cstdlib>
#include <memory>
#include <utility>

namespace marrowick {

Platform makePlatform(int& argc, char** argv)
{
    auto log = std::make_unique<FreedesktopLog>();
    auto const gate = std::make_shared<DeliveryGate>();
    auto events = std::make_unique<FreedesktopEvents>();
    auto application = std::make_unique<FreedesktopApplication>(argc, argv, *events, gate, *log);
    prepareIconTheme(*log);
    prepareWindowIcon();
    auto const windows = std::make_shared<XConnection>();

    Platform services;
    services.clock = std::make_unique<SystemClock>();
    services.dispatch = std::make_unique<FreedesktopDispatch>(gate);
    services.fileManager = std::make_unique<FreedesktopFileManager>();
    services.fileContents = std::make_unique<FreedesktopFileContents>();
    services.fileTransfer = std::make_unique<FreedesktopFileTransfer>();
    services.collation = std::make_unique<FreedesktopCollation>(collationLocale(localeEnvironment()), *log);
    services.defaultsStore = std::make_unique<FreedesktopDefaultsStore>(*log);
    services.fileTypes = std::make_unique<FreedesktopFileTypes>();
    services.formats = std::make_unique<FreedesktopFormats>(
        dateLocale(std::getenv("LC_ALL"), std::getenv("LC_TIME"), std::getenv("LANG")));
    services.tasks = std::make_unique<FreedesktopTasks>();
    services.workspace = std::make_unique<FreedesktopWorkspace>(
        windows, gate, application->bundleIdentifier().value_or(std::string()));
    services.scriptingBridge = std::make_unique<FreedesktopScriptingBridge>(windows);
    services.menuPresenter = std::make_unique<FreedesktopMenuPresenter>(*events, gate);
    services.pasteboard = std::make_unique<FreedesktopPasteboard>();
    services.thumbnails = std::make_unique<FreedesktopThumbnails>(gate);
    services.windows = std::make_unique<FreedesktopWindows>(gate);
    services.alerts = std::make_unique<FreedesktopAlerts>(gate);
    services.statusBar = std::make_unique<FreedesktopStatusBar>(*events, gate, *log);
    services.events = std::move(events);
    services.application = std::move(application);
    services.log = std::move(log);
    return services;
}

}
