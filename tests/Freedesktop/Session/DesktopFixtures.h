#pragma once

#include "Freedesktop/Session/FreedesktopRunningApplication.h"
#include "Freedesktop/Session/FreedesktopWorkspace.h"
#include "Freedesktop/Session/SessionSupport.h"
#include "Freedesktop/Session/TestDisplay.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace marrowick {

/// A desktop whose windows the test announces itself.
class RunningApplicationsTest : public testing::Test {
protected:
    ~RunningApplicationsTest() override { display_.withdraw(); }

    std::vector<std::string> identifiers()
    {
        std::vector<std::string> identifiers;
        for (auto const& application : workspace_.runningApplications(BackgroundOnly::included))
            identifiers.push_back(application->bundleIdentifier().value_or("none"));
        return identifiers;
    }

    /// Not knowing the application fails the test.
    std::shared_ptr<RunningApplication> find(std::string const& identifier)
    {
        for (auto const& application : workspace_.runningApplications(BackgroundOnly::included)) {
            if (application->bundleIdentifier() == identifier)
                return application;
        }
        ADD_FAILURE() << "no application " << identifier;
        return std::make_shared<FreedesktopRunningApplication>(ApplicationFacts {}, std::make_shared<XConnection>());
    }

    TestDisplay display_;
    std::shared_ptr<DeliveryGate> gate_ = std::make_shared<DeliveryGate>();
    FreedesktopWorkspace workspace_ { std::make_shared<XConnection>(), gate_, "org.marrowick.Marrowick" };
};

/// A desktop with a real window manager.
class ManagedDesktopTest : public RunningApplicationsTest {
protected:
    /// Waits until the window manager manages.
    void SetUp() override
    {
        auto const probe = display_.makeWindow("probe", "Probe");
        display_.show(probe);
        ASSERT_TRUE(waitFor([&] { return !identifiers().empty(); }));
        display_.destroy(probe);
        ASSERT_TRUE(waitFor([&] { return identifiers().empty(); }));
    }
    ~ManagedDesktopTest() override
    {
        manager_.end();
        display_.withdraw();
    }

    /// Window managers now and then leave a request unread, until something else happens, such as a property that
    /// changes. Whoever waits for one to be served therefore changes one.
    void stir()
    {
        display_.setText(display_.root(), "_MARROWICK_TEST", "x");
        display_.synchronise();
    }

    std::vector<std::string> identifiers()
    {
        stir();
        return RunningApplicationsTest::identifiers();
    }

    StartedProgram manager_ { { "openbox", "--sm-disable" } };
};

}
