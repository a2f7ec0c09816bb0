#include "Freedesktop/Interface/FreedesktopDispatch.h"

#include "Freedesktop/Interface/SessionSupport.h"

#include <QThread>

#include <gmock/gmock.h>

#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <memory>
#include <optional>
#include <thread>

namespace marrowick {
namespace {

using testing::ElementsAre;

TEST(FreedesktopDispatchTest, PostedWorkRunsLaterInTheOrderOfPosting)
{
    FreedesktopDispatch dispatch;
    std::vector<int> ran;
    for (int number : { 1, 2, 3 })
        dispatch.onMainThread([&, number] { ran.push_back(number); });
    EXPECT_THAT(ran, ElementsAre());
    EXPECT_TRUE(waitFor([&] { return ran.size() == 3; }));
    EXPECT_THAT(ran, ElementsAre(1, 2, 3));
}

TEST(FreedesktopDispatchTest, WorkPostedByWorkRunsAfterIt)
{
    FreedesktopDispatch dispatch;
    std::vector<int> ran;
    dispatch.onMainThread([&] {
        dispatch.onMainThread([&] { ran.push_back(3); });
        ran.push_back(1);
    });
    dispatch.onMainThread([&] { ran.push_back(2); });
    EXPECT_TRUE(waitFor([&] { return ran.size() == 3; }));
    EXPECT_THAT(ran, ElementsAre(1, 2, 3));
}

TEST(FreedesktopDispatchTest, WorkOfAnyThreadRunsOnTheMainThread)
{
    FreedesktopDispatch dispatch;
    EXPECT_TRUE(dispatch.isMainThread());
    std::optional<bool> wasMainThread;
    std::atomic<bool> posterWasMainThread = true;
    std::thread poster([&] {
        posterWasMainThread = dispatch.isMainThread();
        dispatch.onMainThread([&] { wasMainThread = dispatch.isMainThread(); });
    });
    poster.join();
    EXPECT_FALSE(posterWasMainThread);
    EXPECT_TRUE(waitFor([&] { return wasMainThread.has_value(); }));
    EXPECT_TRUE(*wasMainThread);
}

TEST(FreedesktopDispatchTest, BackgroundWorkRunsOnAnotherThreadAtLowPriority)
{
    FreedesktopDispatch dispatch;
    int const ownNiceness = getpriority(PRIO_PROCESS, static_cast<id_t>(gettid()));
    std::optional<bool> wasMainThread;
    int niceness = 0;
    int policy = -1;
    dispatch.inBackground([&] {
        bool const isMainThread = dispatch.isMainThread();
        int const threadNiceness = getpriority(PRIO_PROCESS, static_cast<id_t>(gettid()));
        int const threadPolicy = sched_getscheduler(0);
        dispatch.onMainThread([&, isMainThread, threadNiceness, threadPolicy] {
            wasMainThread = isMainThread;
            niceness = threadNiceness;
            policy = threadPolicy;
        });
    });
    ASSERT_TRUE(waitFor([&] { return wasMainThread.has_value(); }));
    EXPECT_FALSE(*wasMainThread);
    EXPECT_GT(niceness, ownNiceness);
    EXPECT_EQ(policy, SCHED_BATCH);
    EXPECT_EQ(getpriority(PRIO_PROCESS, static_cast<id_t>(gettid())), ownNiceness);
}

TEST(FreedesktopDispatchTest, NothingRunsAfterTheEnd)
{
    int ranAfterwards = 0;
    bool hasRunInBackground = false;
    {
        FreedesktopDispatch dispatch;
        dispatch.onMainThread([&] { ++ranAfterwards; });
        dispatch.inBackground([&] {
            QThread::msleep(50);
            hasRunInBackground = true;
            dispatch.onMainThread([&] { ++ranAfterwards; });
        });
        // Begun, so that the end has to wait for it.
        QThread::msleep(20);
    }
    bool const hadRunAtTheEnd = hasRunInBackground;
    bool isLaterPostHeard = false;
    FreedesktopDispatch later;
    later.onMainThread([&] { isLaterPostHeard = true; });
    EXPECT_TRUE(waitFor([&] { return isLaterPostHeard; }));
    EXPECT_EQ(ranAfterwards, 0);
    EXPECT_EQ(hadRunAtTheEnd, hasRunInBackground);
}

TEST(FreedesktopDispatchTest, TimerRepeatsUntilItsSubscriptionEnds)
{
    FreedesktopDispatch dispatch;
    int first = 0;
    int second = 0;
    auto ended = dispatch.repeatingTimer(std::chrono::milliseconds(20), [&] { ++first; });
    auto const going = dispatch.repeatingTimer(std::chrono::milliseconds(20), [&] { ++second; });
    EXPECT_EQ(first, 0);
    EXPECT_TRUE(waitFor([&] { return first >= 2; }));
    ended.end();
    int const atTheEnd = first;
    int const othersAtTheEnd = second;
    EXPECT_TRUE(waitFor([&] { return second >= othersAtTheEnd + 3; }));
    EXPECT_EQ(first, atTheEnd);
}

TEST(FreedesktopDispatchTest, TimerMayEndInsideItsOwnHandler)
{
    FreedesktopDispatch dispatch;
    Subscription timer;
    auto const witness = std::make_shared<int>(0);
    timer = dispatch.repeatingTimer(std::chrono::milliseconds(10), [&timer, witness] {
        timer.end();
        // The handler's own captures are alive until it returns.
        ++*witness;
    });
    EXPECT_TRUE(waitFor([&] { return *witness == 1; }));
    EXPECT_FALSE(timer.isActive());
    EXPECT_TRUE(waitFor([&] { return witness.use_count() == 1; }));
    EXPECT_EQ(*witness, 1);
}

TEST(FreedesktopDispatchTest, SubscriptionMayOutliveTheDispatch)
{
    Subscription timer;
    int fired = 0;
    {
        FreedesktopDispatch dispatch;
        timer = dispatch.repeatingTimer(std::chrono::milliseconds(1), [&] { ++fired; });
    }
    timer.end();
    EXPECT_EQ(fired, 0);
}

}
}
