#include "Fakes/TestPlatform.h"

#include <utility>

namespace marrowick {

namespace {

class NoFileContents final : public FileContents {
public:
    Result<std::string> read(FileURL const& url, std::size_t) const override
    {
        ADD_FAILURE() << "a file that the test did not expect to be read: " << url.path();
        return Error { ErrorKind::other, "no disk" };
    }
};

}

struct TestPlatform::Services {
    Services(std::unique_ptr<FileManager> real, std::unique_ptr<FileContents> contents)
        : fileManager(std::make_unique<FakeFileManager>(std::move(real)))
        , fileContents(std::move(contents))
    {
    }

    std::unique_ptr<FakeLog> log = std::make_unique<FakeLog>();
    std::unique_ptr<FakeEvents> events = std::make_unique<FakeEvents>();
    std::unique_ptr<FakeApplication> application = std::make_unique<FakeApplication>(*events);
    std::unique_ptr<FakeDispatch> dispatch = std::make_unique<FakeDispatch>();
    std::unique_ptr<FakeFileManager> fileManager;
    std::unique_ptr<FileContents> fileContents;
    std::unique_ptr<FakeDefaultsStore> defaults = std::make_unique<FakeDefaultsStore>();
    std::unique_ptr<FakeWorkspace> workspace = std::make_unique<FakeWorkspace>();
    std::unique_ptr<FakeFinder> finder = std::make_unique<FakeFinder>();
    std::unique_ptr<FakeMenuPresenter> menus = std::make_unique<FakeMenuPresenter>(*events);
    std::unique_ptr<FakeStatusBar> statusBar = std::make_unique<FakeStatusBar>(*events);

    Platform intoPlatform()
    {
        Platform platform;
        platform.log = std::move(log);
        platform.application = std::move(application);
        platform.dispatch = std::move(dispatch);
        platform.fileManager = std::move(fileManager);
        platform.fileContents = std::move(fileContents);
        platform.collation = std::make_unique<FakeCollation>();
        platform.defaultsStore = std::move(defaults);
        platform.events = std::move(events);
        platform.workspace = std::move(workspace);
        platform.scriptingBridge = std::move(finder);
        platform.menuPresenter = std::move(menus);
        platform.statusBar = std::move(statusBar);
        return platform;
    }
};

TestPlatform::TestPlatform()
    : TestPlatform(Services(nullptr, std::make_unique<NoFileContents>()))
{
}

TestPlatform::TestPlatform(std::unique_ptr<FileManager> fileManager, std::unique_ptr<FileContents> fileContents)
    : TestPlatform(Services(std::move(fileManager), std::move(fileContents)))
{
}

TestPlatform::TestPlatform(Services services)
    : log(*services.log)
    , events(*services.events)
    , application(*services.application)
    , dispatch(*services.dispatch)
    , fileManager(*services.fileManager)
    , defaults(*services.defaults)
    , workspace(*services.workspace)
    , finder(*services.finder)
    , menus(*services.menus)
    , statusBar(*services.statusBar)
    , scope_(services.intoPlatform())
{
}

TestPlatform::~TestPlatform() = default;

}
