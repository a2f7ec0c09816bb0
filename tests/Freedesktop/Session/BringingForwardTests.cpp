#include "Freedesktop/Session/DesktopFixtures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <utility>
#include <vector>

namespace marrowick {

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

using Windows = std::vector<xcb_window_t>;

/// A desktop with a real window manager, three windows of the application A and one of B.
class BringingForwardTest : public ManagedDesktopTest {
protected:
    void SetUp() override
    {
        ManagedDesktopTest::SetUp();
        for (auto* const window : { &first_, &second_, &third_ })
            *window = shown("A");
        other_ = shown("B");
        ASSERT_TRUE(waitFor([&] { return identifiers() == std::vector<std::string> { "A", "B" }; }));
        stack({ third_, first_, second_, other_ });
    }

    xcb_window_t shown(std::string const& wmClass)
    {
        auto const window = display_.makeWindow("instance", wmClass);
        display_.show(window);
        return window;
    }

    /// Brings the windows to the front one after the other; the last one is active then.
    void stack(Windows const& windows)
    {
        for (auto const window : windows) {
            ASSERT_EQ(runProgram({ "wmctrl", "-i", "-a", std::to_string(window) }), 0);
            ASSERT_TRUE(waitFor([&] { return active() == window; }));
        }
        ASSERT_TRUE(waitFor([&] { return stacking() == windows; })) << testing::PrintToString(stacking());
    }

    void minimise(xcb_window_t window)
    {
        display_.minimise(window);
        ASSERT_TRUE(waitFor([&] { return isMinimised(window); }));
    }

    bool isMinimised(xcb_window_t window)
    {
        stir();
        auto const state = display_.numbers(window, "WM_STATE");
        return !state.empty() && state.front() == 3;
    }

    xcb_window_t active()
    {
        stir();
        auto const window = display_.numbers(display_.root(), "_NET_ACTIVE_WINDOW");
        return window.empty() ? 0 : window.front();
    }

    /// From the bottom up.
    Windows stacking() { return display_.numbers(display_.root(), "_NET_CLIENT_LIST_STACKING"); }

    void expectStacking(Windows const& wanted, xcb_window_t activeWindow)
    {
        EXPECT_TRUE(waitFor([&] { return stacking() == wanted && active() == activeWindow; }));
        EXPECT_THAT(stacking(), ElementsAreArray(wanted));
        EXPECT_EQ(active(), activeWindow);
    }

    /// What is wanted may be there before the window manager has done anything, so it has to last.
    void expectLastingStacking(Windows const& wanted, xcb_window_t activeWindow)
    {
        using Clock = std::chrono::steady_clock;
        auto since = Clock::now();
        EXPECT_TRUE(waitFor([&] {
            if (stacking() != wanted || active() != activeWindow)
                since = Clock::now();
            return Clock::now() - since >= std::chrono::milliseconds(300);
        })) << testing::PrintToString(stacking());
    }

    xcb_window_t first_ = XCB_WINDOW_NONE;
    xcb_window_t second_ = XCB_WINDOW_NONE;
    xcb_window_t third_ = XCB_WINDOW_NONE;
    xcb_window_t other_ = XCB_WINDOW_NONE;
};

/// A desktop whose window manager is the test: what it is asked for counts.
class AskedManagerTest : public RunningApplicationsTest {
protected:
    void announce(std::vector<char const*> const& supported)
    {
        display_.setAtoms(display_.root(), "_NET_SUPPORTED", supported);
        display_.setNumbers(display_.root(), "_NET_CLIENT_LIST_STACKING", "WINDOW", { upper_, other_, lower_ });
        display_.announce({ lower_, upper_, other_ });
        std::swap(lower_, upper_);
        display_.hearMessages();
    }

    xcb_window_t lower_ = display_.makeWindow("a", "A");
    xcb_window_t upper_ = display_.makeWindow("a", "A");
    xcb_window_t other_ = display_.makeWindow("b", "B");
};

}

TEST_F(BringingForwardTest, AllWindowsComeForwardInTheirOrder)
{
    find("A")->activate(ActivationOptions::allWindows);
    expectStacking({ other_, third_, first_, second_ }, second_);
}

TEST_F(BringingForwardTest, TheFrontWindowAloneComesForward)
{
    find("A")->activate(ActivationOptions::none);
    expectStacking({ third_, first_, other_, second_ }, second_);
}

TEST_F(BringingForwardTest, WhatIsInFrontAlreadyStaysSo)
{
    for (int i = 0; i < 2; ++i) {
        find("A")->activate(ActivationOptions::allWindows);
        expectLastingStacking({ other_, third_, first_, second_ }, second_);
    }
}

TEST_F(BringingForwardTest, AMinimisedApplicationComesBackWhole)
{
    for (auto const window : { third_, first_, second_ })
        minimise(window);
    ASSERT_TRUE(find("A")->isHidden());
    auto const order = stacking();
    find("A")->activate(ActivationOptions::allWindows);
    ASSERT_TRUE(waitFor([&] { return active() == second_ || active() == first_ || active() == third_; }));
    EXPECT_TRUE(waitFor([&] { return !isMinimised(first_) && !isMinimised(second_) && !isMinimised(third_); }));
    EXPECT_FALSE(find("A")->isHidden());
    EXPECT_TRUE(find("A")->isActive());
    // Above the other application, in the order in which they lay.
    auto wanted = order;
    std::erase(wanted, other_);
    wanted.insert(wanted.begin(), other_);
    expectStacking(wanted, wanted.back());
}

TEST_F(BringingForwardTest, OfAMinimisedApplicationTheFrontWindowAloneComesBack)
{
    for (auto const window : { third_, first_, second_ })
        minimise(window);
    find("A")->activate(ActivationOptions::none);
    ASSERT_TRUE(waitFor([&] { return find("A")->isActive(); }));
    Windows const all { first_, second_, third_ };
    EXPECT_EQ(std::count_if(all.begin(), all.end(), [&](auto window) { return isMinimised(window); }), 2);
}

TEST_F(BringingForwardTest, AMinimisedWindowOfAShownApplicationStaysAway)
{
    minimise(first_);
    find("A")->activate(ActivationOptions::allWindows);
    ASSERT_TRUE(waitFor([&] { return active() == second_; }));
    EXPECT_TRUE(isMinimised(first_));
}

TEST_F(BringingForwardTest, AWindowOpenedMeanwhileByTheSameProcessComesToo)
{
    auto const later = display_.makeWindow("instance", "A");
    for (auto const window : { first_, second_, third_, later })
        display_.setPID(window, 1);
    display_.synchronise();
    auto const application = find("A");
    display_.show(later);
    ASSERT_TRUE(waitFor([&] { return stacking().size() == 5; }));
    stack({ third_, first_, second_, later, other_ });
    application->activate(ActivationOptions::allWindows);
    expectStacking({ other_, third_, first_, second_, later }, later);
}

TEST_F(BringingForwardTest, AnApplicationThatHasQuitIsNotBroughtForward)
{
    auto const application = find("A");
    for (auto const window : { first_, second_, third_ })
        display_.destroy(window);
    ASSERT_TRUE(waitFor([&] { return identifiers() == std::vector<std::string> { "B" }; }));
    auto const last = shown("C");
    ASSERT_TRUE(waitFor([&] { return stacking().size() == 2; }));
    stack({ other_, last });
    application->activate(ActivationOptions::allWindows);
    application->activate(ActivationOptions::none);
    // What is asked for afterwards is done, and the only thing.
    find("B")->activate(ActivationOptions::none);
    expectStacking({ last, other_ }, other_);
}

TEST_F(AskedManagerTest, LowerWindowsAreRaisedWithoutTheKeysWhereTheManagerCanDoThat)
{
    announce({ "_NET_ACTIVE_WINDOW", "_NET_RESTACK_WINDOW" });
    find("A")->activate(ActivationOptions::allWindows);
    auto const raised = display_.waitForMessages("_NET_RESTACK_WINDOW", 1);
    ASSERT_EQ(raised.size(), 1u);
    EXPECT_EQ(raised[0].window, lower_);
    EXPECT_THAT(raised[0].data, ElementsAre(2u, XCB_WINDOW_NONE, XCB_STACK_MODE_ABOVE, 0u, 0u));
}

TEST_F(AskedManagerTest, TheFrontWindowGetsTheKeysInTheUsersName)
{
    announce({ "_NET_ACTIVE_WINDOW", "_NET_RESTACK_WINDOW" });
    find("A")->activate(ActivationOptions::allWindows);
    find("B")->activate(ActivationOptions::allWindows);
    auto const activated = display_.waitForMessages("_NET_ACTIVE_WINDOW", 2);
    ASSERT_EQ(activated.size(), 2u);
    EXPECT_EQ(activated[0].window, upper_);
    EXPECT_EQ(activated[1].window, other_);
    for (auto const& message : activated) {
        EXPECT_EQ(message.data[0], 2u);
        EXPECT_NE(message.data[1], XCB_CURRENT_TIME);
    }
}

TEST_F(AskedManagerTest, AManagerThatCannotRaiseAloneActivatesOneAfterTheOther)
{
    announce({ "_NET_ACTIVE_WINDOW" });
    find("A")->activate(ActivationOptions::allWindows);
    auto const activated = display_.waitForMessages("_NET_ACTIVE_WINDOW", 2);
    ASSERT_EQ(activated.size(), 2u);
    EXPECT_EQ(activated[0].window, lower_);
    EXPECT_EQ(activated[1].window, upper_);
}

}
