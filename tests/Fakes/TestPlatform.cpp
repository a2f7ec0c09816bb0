#include "Fakes/TestPlatform.h"

#include <utility>

namespace marrowick {

struct TestPlatform::Services {
    Services(std::unique_ptr<FileManager> manager, std::unique_ptr<FileContents> contents,
        std::unique_ptr<FileTransfer> transfer)
        : fileManager(std::make_unique<FakeFileManager>(std::move(manager)))
        , fileContents(std::make_unique<FakeFileContents>(std::move(contents)))
        , fileTransfer(std::make_unique<FakeFileTransfer>(*calls, std::move(transfer)))
    {
    }

    std::unique_ptr<CallRecord> calls = std::make_unique<CallRecord>();
    std::unique_ptr<FakeLog> log = std::make_unique<FakeLog>();
    std::unique_ptr<FakeClock> clock = std::make_unique<FakeClock>();
    std::unique_ptr<FakeEvents> events = std::make_unique<FakeEvents>();
    std::unique_ptr<FakeDispatch> dispatch = std::make_unique<FakeDispatch>();
    std::unique_ptr<FakeApplication> application = std::make_unique<FakeApplication>(*events, *dispatch);
    std::unique_ptr<FakeFileManager> fileManager;
    std::unique_ptr<FakeFileContents> fileContents;
    std::unique_ptr<FakeFileTransfer> fileTransfer;
    std::unique_ptr<FakeDefaultsStore> defaults = std::make_unique<FakeDefaultsStore>();
    std::unique_ptr<FakeFileTypes> fileTypes = std::make_unique<FakeFileTypes>();
    std::unique_ptr<FakePasteboard> pasteboard = std::make_unique<FakePasteboard>();
    std::unique_ptr<FakeThumbnails> thumbnails = std::make_unique<FakeThumbnails>(*dispatch);
    std::unique_ptr<FakeWindows> windows = std::make_unique<FakeWindows>(*calls, *dispatch);
    std::unique_ptr<FakeTasks> tasks = std::make_unique<FakeTasks>(*calls);
    std::unique_ptr<FakeWorkspace> workspace = std::make_unique<FakeWorkspace>(*calls, *dispatch);
    std::unique_ptr<FakeFinder> finder = std::make_unique<FakeFinder>(*calls);
    std::unique_ptr<FakeMenuPresenter> menus = std::make_unique<FakeMenuPresenter>(*events);
    std::unique_ptr<FakeAlerts> alerts = std::make_unique<FakeAlerts>(*calls, *dispatch, *menus);
    std::unique_ptr<FakeStatusBar> statusBar = std::make_unique<FakeStatusBar>(*events, *dispatch);

    Platform intoPlatform()
    {
        Platform platform;
        platform.log = std::move(log);
        platform.clock = std::move(clock);
        platform.application = std::move(application);
        platform.dispatch = std::move(dispatch);
        platform.fileManager = std::move(fileManager);
        platform.fileContents = std::move(fileContents);
        platform.fileTransfer = std::move(fileTransfer);
        platform.collation = std::make_unique<FakeCollation>();
        platform.defaultsStore = std::move(defaults);
        platform.events = std::move(events);
        platform.fileTypes = std::move(fileTypes);
        platform.formats = std::make_unique<FakeFormats>();
        platform.pasteboard = std::move(pasteboard);
        platform.thumbnails = std::move(thumbnails);
        platform.windows = std::move(windows);
        platform.tasks = std::move(tasks);
        platform.workspace = std::move(workspace);
        platform.scriptingBridge = std::move(finder);
        platform.menuPresenter = std::move(menus);
        platform.alerts = std::move(alerts);
        platform.statusBar = std::move(statusBar);
        return platform;
    }
};

TestPlatform::TestPlatform()
    : TestPlatform(Services(nullptr, nullptr, nullptr))
{
}

TestPlatform::TestPlatform(std::unique_ptr<FileManager> fileManager, std::unique_ptr<FileContents> fileContents,
    std::unique_ptr<FileTransfer> fileTransfer)
    : TestPlatform(Services(std::move(fileManager), std::move(fileContents), std::move(fileTransfer)))
{
}

TestPlatform::TestPlatform(Services services)
    : record_(std::move(services.calls))
    , calls(*record_)
    , log(*services.log)
    , clock(*services.clock)
    , events(*services.events)
    , application(*services.application)
    , dispatch(*services.dispatch)
    , fileManager(*services.fileManager)
    , fileContents(*services.fileContents)
    , fileTransfer(*services.fileTransfer)
    , defaults(*services.defaults)
    , fileTypes(*services.fileTypes)
    , pasteboard(*services.pasteboard)
    , thumbnails(*services.thumbnails)
    , windows(*services.windows)
    , tasks(*services.tasks)
    , workspace(*services.workspace)
    , finder(*services.finder)
    , menus(*services.menus)
    , alerts(*services.alerts)
    , statusBar(*services.statusBar)
    , scope_(services.intoPlatform())
{
}

TestPlatform::~TestPlatform() = default;

}
