#pragma once

#include "Fakes/CallRecord.h"
#include "Fakes/FakeAlerts.h"
#include "Fakes/FakeApplication.h"
#include "Fakes/FakeClock.h"
#include "Fakes/FakeCollation.h"
#include "Fakes/FakeDefaultsStore.h"
#include "Fakes/FakeDispatch.h"
#include "Fakes/FakeEvents.h"
#include "Fakes/FakeFileContents.h"
#include "Fakes/FakeFileManager.h"
#include "Fakes/FakeFileTransfer.h"
#include "Fakes/FakeFileTypes.h"
#include "Fakes/FakeFinder.h"
#include "Fakes/FakeLog.h"
#include "Fakes/FakeMenuPresenter.h"
#include "Fakes/FakeStatusBar.h"
#include "Fakes/FakeTasks.h"
#include "Fakes/FakeThumbnails.h"
#include "Fakes/FakeWindows.h"
#include "Fakes/FakeWorkspace.h"
#include "Platform/Platform.h"

#include <memory>

#include <gtest/gtest.h>

namespace marrowick {

/// Installs a fake for every service and keeps them at hand. The disk is the real one only where a test brings it.
class TestPlatform {
public:
    /// Without a disk: a question about it fails the test.
    TestPlatform();
    TestPlatform(std::unique_ptr<FileManager> fileManager, std::unique_ptr<FileContents> fileContents,
        std::unique_ptr<FileTransfer> fileTransfer);
    ~TestPlatform();

private:
    /// Outlives the services, which write into it.
    std::unique_ptr<CallRecord> record_;

public:
    CallRecord& calls;
    FakeLog& log;
    FakeClock& clock;
    FakeEvents& events;
    FakeApplication& application;
    FakeDispatch& dispatch;
    FakeFileManager& fileManager;
    FakeFileContents& fileContents;
    FakeFileTransfer& fileTransfer;
    FakeDefaultsStore& defaults;
    FakeFileTypes& fileTypes;
    FakePasteboard& pasteboard;
    FakeThumbnails& thumbnails;
    FakeWindows& windows;
    FakeTasks& tasks;
    FakeWorkspace& workspace;
    FakeFinder& finder;
    FakeMenuPresenter& menus;
    FakeAlerts& alerts;
    FakeStatusBar& statusBar;

private:
    struct Services;
    explicit TestPlatform(Services services);

    PlatformScope scope_;
};

class PlatformTest : public testing::Test {
protected:
    TestPlatform desktop;
};

}
