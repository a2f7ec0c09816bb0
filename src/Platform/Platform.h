#pragma once

#include "Platform/Alerts.h"
#include "Platform/Application.h"
#include "Platform/Clock.h"
#include "Platform/Collation.h"
#include "Platform/DefaultsStore.h"
#include "Platform/Dispatch.h"
#include "Platform/Events.h"
#include "Platform/FileContents.h"
#include "Platform/FileManager.h"
#include "Platform/FileTransfer.h"
#include "Platform/FileTypes.h"
#include "Platform/Formats.h"
#include "Platform/Log.h"
#include "Platform/MenuPresenter.h"
#include "Platform/Pasteboard.h"
#include "Platform/ScriptingBridge.h"
#include "Platform/StatusItem.h"
#include "Platform/Tasks.h"
#include "Platform/Thumbnails.h"
#include "Platform/Windows.h"
#include "Platform/Workspace.h"

#include <memory>
#include <string_view>

namespace marrowick {

/// The services of one desktop. Members are destroyed in the reverse of their order.
struct Platform {
    std::unique_ptr<Log> log;
    std::unique_ptr<Clock> clock;
    std::unique_ptr<Application> application;
    std::unique_ptr<FileManager> fileManager;
    std::unique_ptr<FileContents> fileContents;
    std::unique_ptr<FileTransfer> fileTransfer;
    std::unique_ptr<Collation> collation;
    /// Before those that its background tasks may use are gone, it is.
    std::unique_ptr<Dispatch> dispatch;
    std::unique_ptr<DefaultsStore> defaultsStore;
    std::unique_ptr<FileTypes> fileTypes;
    std::unique_ptr<Formats> formats;
    std::unique_ptr<Events> events;
    std::unique_ptr<Tasks> tasks;
    std::unique_ptr<Workspace> workspace;
    std::unique_ptr<ScriptingBridge> scriptingBridge;
    std::unique_ptr<MenuPresenter> menuPresenter;
    std::unique_ptr<Pasteboard> pasteboard;
    std::unique_ptr<Thumbnails> thumbnails;
    std::unique_ptr<Windows> windows;
    std::unique_ptr<Alerts> alerts;
    std::unique_ptr<StatusBar> statusBar;
};

/// The installed services. Main thread only; without an installed platform, and on any other thread, the process stops.
Platform& platform();

/// Installs services for its own lifetime. The thread that makes it is the main thread.
class PlatformScope {
public:
    explicit PlatformScope(Platform services);
    ~PlatformScope();
    PlatformScope(PlatformScope const&) = delete;
    PlatformScope& operator=(PlatformScope const&) = delete;
};

/// Makes the services of the desktop that the program was built for. Defined by the desktop's folder; one is linked.
/// Words of the command line that are the toolkit's are taken out of `argv`.
Platform makePlatform(int& argc, char** argv);

/// Stops the process after one line in the system log: a rule that the program itself must keep was broken.
[[noreturn]] void fatalError(std::string_view message);

/// Stops the process unless this is the main thread.
void assertMainThread();

}
