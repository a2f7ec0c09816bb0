#pragma once

#include "Fakes/FakeApplication.h"
#include "Fakes/FakeCollation.h"
#include "Fakes/FakeDefaultsStore.h"
#include "Fakes/FakeDispatch.h"
#include "Fakes/FakeEvents.h"
#include "Fakes/FakeFileManager.h"
#include "Fakes/FakeFinder.h"
#include "Fakes/FakeLog.h"
#include "Fakes/FakeMenuPresenter.h"
#include "Fakes/FakeStatusBar.h"
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
    TestPlatform(std::unique_ptr<FileManager> fileManager, std::unique_ptr<FileContents> fileContents);
    ~TestPlatform();

    FakeLog& log;
    FakeEvents& events;
    FakeApplication& application;
    FakeDispatch& dispatch;
    FakeFileManager& fileManager;
    FakeDefaultsStore& defaults;
    FakeWorkspace& workspace;
    FakeFinder& finder;
    FakeMenuPresenter& menus;
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
