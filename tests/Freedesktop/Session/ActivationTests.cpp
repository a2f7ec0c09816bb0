#include "Freedesktop/Session/DesktopFixtures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>

namespace marrowick {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Notes which applications became active.
class ActivationTest : public RunningApplicationsTest {
protected:
    Subscription observe()
    {
        return workspace_.observeActivation([this](auto const& application) {
            activated_.push_back(application ? application->bundleIdentifier().value_or("none") : "null");
        });
    }

    /// Serves what is under way, known by the last of it: the activation of an application of its own.
    void settle()
    {
        auto const name = "Settle" + std::to_string(++settled_);
        display_.announceActive(display_.makeWindow("s", name));
        auto const isThere = [&] { return std::find(activated_.begin(), activated_.end(), name) != activated_.end(); };
        ASSERT_TRUE(waitFor(isThere));
        std::erase(activated_, name);
    }

    std::vector<std::string> activated_;
    int settled_ = 0;
};

}

TEST_F(ActivationTest, ReportsEachOtherApplicationOnce)
{
    auto const a = display_.makeWindow("a", "A");
    auto const a2 = display_.makeWindow("a", "A");
    auto const b = display_.makeWindow("b", "B");
    display_.announce({ a, a2, b });
    auto const subscription = observe();
    ASSERT_TRUE(subscription.isActive());
    for (auto const window : { a, a, a2, b, b, a2 }) {
        display_.announceActive(window);
        auto const expected = window == b ? "B" : "A";
        ASSERT_TRUE(waitFor([&] { return !activated_.empty() && activated_.back() == expected; }));
    }
    settle();
    EXPECT_THAT(activated_, ElementsAre("A", "B", "A"));
}

TEST_F(ActivationTest, NoneAndOwnWindowsDoNotCount)
{
    auto const a = display_.makeWindow("a", "A");
    auto const own = display_.makeWindow("b", "Unrelated");
    display_.setPID(own, getpid());
    auto const ownByClass = display_.makeWindow("marrowick", "Marrowick");
    display_.announce({ a, own, ownByClass });
    auto const subscription = observe();
    display_.announceActive(a);
    ASSERT_TRUE(waitFor([&] { return activated_.size() == 1; }));
    for (auto const window : { xcb_window_t {}, own, ownByClass, a, xcb_window_t { 0x7FFFFFF } }) {
        display_.announceActive(window);
        // Each change is seen by itself, not only the last of them.
        auto const isSeen = [&, rounds = 0]() mutable { return ++rounds > 5; };
        ASSERT_TRUE(waitFor(isSeen));
    }
    settle();
    EXPECT_THAT(activated_, ElementsAre("A"));
}

TEST_F(ActivationTest, ActivationsWaitInTheirOrderWhileTheGateIsClosed)
{
    auto const a = display_.makeWindow("a", "A");
    auto const b = display_.makeWindow("b", "B");
    display_.announce({ a, b });
    auto const subscription = observe();
    auto ended = workspace_.observeActivation([](auto const&) { ADD_FAILURE() << "heard after the end"; });
    {
        DeliveryGate::Closure const closure(*gate_);
        for (auto const window : { a, b }) {
            display_.announceActive(window);
            auto const isSeen = [&, rounds = 0]() mutable { return ++rounds > 5; };
            ASSERT_TRUE(waitFor(isSeen));
        }
        EXPECT_THAT(activated_, IsEmpty());
        ended.end();
    }
    EXPECT_THAT(activated_, IsEmpty());
    settle();
    EXPECT_THAT(activated_, ElementsAre("A", "B"));
}

TEST_F(ActivationTest, TheApplicationThatIsActiveAlreadyIsNoNews)
{
    auto const a = display_.makeWindow("a", "A");
    display_.announce({ a }, a);
    auto const subscription = observe();
    display_.announceActive(a);
    settle();
    EXPECT_THAT(activated_, IsEmpty());
}

TEST_F(ActivationTest, TheReportKnowsTheApplicationsOtherWindows)
{
    auto const dialog = display_.makeWindow("a", "A");
    display_.setAtoms(dialog, "_NET_WM_STATE", { "_NET_WM_STATE_SKIP_TASKBAR" });
    display_.announce({ display_.makeWindow("a", "A"), dialog });
    std::shared_ptr<RunningApplication> reported;
    auto const subscription = workspace_.observeActivation([&](auto const& application) { reported = application; });
    display_.announceActive(dialog);
    ASSERT_TRUE(waitFor([&] { return reported != nullptr; }));
    EXPECT_EQ(reported->activationPolicy(), ActivationPolicy::regular);
    EXPECT_TRUE(reported->isActive());
}

TEST_F(ActivationTest, NothingArrivesAfterTheEnd)
{
    auto const a = display_.makeWindow("a", "A");
    display_.announce({ a });
    int counted = 0;
    auto ended = workspace_.observeActivation([&](auto const&) { ++counted; });
    auto const other = observe();
    ended.end();
    display_.announceActive(a);
    ASSERT_TRUE(waitFor([&] { return !activated_.empty(); }));
    settle();
    EXPECT_EQ(counted, 0);
    EXPECT_THAT(activated_, ElementsAre("A"));
}

TEST_F(ActivationTest, AnObserverMayEndItselfAndOthersInItsHandler)
{
    auto const a = display_.makeWindow("a", "A");
    display_.announce({ a });
    int first = 0;
    int second = 0;
    Subscription firstSubscription;
    Subscription secondSubscription;
    firstSubscription = workspace_.observeActivation([&](auto const&) {
        ++first;
        firstSubscription.end();
        secondSubscription.end();
    });
    secondSubscription = workspace_.observeActivation([&](auto const&) { ++second; });
    display_.announceActive(a);
    ASSERT_TRUE(waitFor([&] { return first > 0; }));
    auto const last = observe();
    settle();
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 0);
}

TEST_F(ActivationTest, ASubscriptionMayOutliveTheWorkspace)
{
    auto workspace = std::make_unique<FreedesktopWorkspace>(
        std::make_shared<XConnection>(), std::make_shared<DeliveryGate>(), "org.marrowick.Marrowick");
    auto subscription = workspace->observeActivation([](auto const&) {});
    EXPECT_TRUE(subscription.isActive());
    workspace.reset();
    subscription.end();
    EXPECT_FALSE(subscription.isActive());
}

TEST_F(ActivationTest, AChangeThatAQuestionOvertakesIsStillReported)
{
    auto const a = display_.makeWindow("a", "A");
    display_.announce({ a });
    auto const subscription = observe();
    // The question's answer brings the event along, so the connection itself will not become readable for it.
    display_.announceActive(a);
    workspace_.runningApplications(BackgroundOnly::included);
    EXPECT_TRUE(waitFor([&] { return activated_ == std::vector<std::string> { "A" }; }));
}

TEST_F(ManagedDesktopTest, ActivationByTheWindowManagerIsReported)
{
    std::vector<std::string> activated;
    auto const subscription = workspace_.observeActivation(
        [&](auto const& application) { activated.push_back(application->bundleIdentifier().value_or("none")); });
    StartedProgram const first({ "xterm", "-class", "FirstTerm", "-e", "sleep", "100" });
    ASSERT_TRUE(waitFor([&] { return !activated.empty() && activated.back() == "FirstTerm"; }));
    StartedProgram const second({ "xterm", "-class", "SecondTerm", "-e", "sleep", "100" });
    ASSERT_TRUE(waitFor([&] { return activated.back() == "SecondTerm"; }));
    ASSERT_EQ(runProgram({ "wmctrl", "-x", "-a", "FirstTerm" }), 0);
    ASSERT_TRUE(waitFor([&] { return activated.size() == 3; }));
    EXPECT_THAT(activated, ElementsAre("FirstTerm", "SecondTerm", "FirstTerm"));
}

}
