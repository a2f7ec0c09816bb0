#include "Fakes/TestPlatform.h"

#include <chrono>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

/// The rules of `Alerts`, as the fake services keep them.
using AlertsTest = PlatformTest;

TEST_F(AlertsTest, WhileAnAlertIsUpNothingElseReachesTheProgram)
{
    std::vector<std::string> happened;
    auto const timer
        = desktop.dispatch.repeatingTimer(std::chrono::seconds(1), [&] { happened.emplace_back("timer"); });
    auto const activations
        = desktop.workspace.observeActivation([&](auto const&) { happened.emplace_back("activation"); });
    platform().workspace->recycle({ FileURL("/a") }, [&](auto const&) { happened.emplace_back("recycled"); });
    platform().dispatch->onMainThread([&] { happened.emplace_back("posted before"); });
    Alert const question {
        .style = AlertStyle::warning, .messageText = "a question", .informativeText = "", .buttons = { "Yes", "No" }
    };
    desktop.alerts.answers = { 1, 0 };
    desktop.alerts.whileUp = [&] {
        desktop.dispatch.fireTimers(std::chrono::seconds(1));
        desktop.workspace.activate(nullptr);
        desktop.workspace.finishRecycling(std::nullopt);
        platform().dispatch->onMainThread([&] { happened.emplace_back("posted"); });
        // An alert on top of it ends first.
        desktop.alerts.whileUp = {};
        platform().alerts->runModal(Error { ErrorKind::other, "an error" });
        desktop.dispatch.runMain();
        EXPECT_TRUE(happened.empty());
    };
    EXPECT_EQ(platform().alerts->runModal(question), 0u);
    EXPECT_TRUE(happened.empty());
    desktop.dispatch.runMain();
    EXPECT_EQ(happened, (std::vector<std::string> { "posted before", "timer", "activation", "recycled", "posted" }));
}

TEST_F(AlertsTest, ClicksOnTheStatusItemAreDroppedWhileAnAlertIsUp)
{
    int clicks = 0;
    auto const item = platform().statusBar->makeStatusItem(StatusBar::squareLength);
    item->button()->setAction([&] { ++clicks; });
    item->button()->sendActionOn(1U << static_cast<unsigned>(EventType::leftMouseUp));
    desktop.alerts.answers = { 0 };
    desktop.alerts.whileUp = [&] { desktop.statusBar.click(EventType::leftMouseUp); };
    platform().alerts->runModal(Error { ErrorKind::other, "an error" });
    desktop.dispatch.runMain();
    EXPECT_EQ(clicks, 0);
    desktop.statusBar.click(EventType::leftMouseUp);
    EXPECT_EQ(clicks, 1);
}

TEST_F(AlertsTest, AnOpenMenuClosesFirst)
{
    auto const menu = std::make_shared<Menu>("");
    desktop.menus.popUp(menu, nullptr);
    desktop.alerts.answers = { 0 };
    desktop.alerts.whileUp = [&] { EXPECT_FALSE(desktop.menus.isOpen()); };
    platform().alerts->runModal(Error { ErrorKind::other, "an error" });
    EXPECT_EQ(desktop.menus.cancellations, 0);
}

}
}
