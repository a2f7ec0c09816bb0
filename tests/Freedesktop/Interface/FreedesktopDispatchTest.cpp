#include "Freedesktop/Interface/FreedesktopDispatch.h"

#include "Freedesktop/Interface/SessionSupport.h"

#include <QCoreApplication>
#include <QThread>
#include <QTimer>

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

void serveEvents()
{
    for (int i = 0; i < 20; ++i) {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

TEST(FreedesktopDispatchTest, PostedWorkRunsLaterInTheOrderOfPosting)
{
    FreedesktopDispatch dispatch(std::make_shared<DeliveryGate>());
    std::vector<int> ran;
    for (int number : { 1, 2, 3 })
        dispatch.onMainThread([&, number] { ran.push_back(number); });
    EXPECT_THAT(ran, ElementsAre());
    EXPECT_TRUE(waitFor([&] { return ran.size() == 3; }));
    EXPECT_THAT(ran, ElementsAre(1, 2, 3));
}

TEST(FreedesktopDispatchTest, WorkPostedByWorkRunsAfterIt)
{
    FreedesktopDispatch dispatch(std::make_shared<DeliveryGate>());
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
    FreedesktopDispatch dispatch(std::make_shared<DeliveryGate>());
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
    FreedesktopDispatch dispatch(std::make_shared<DeliveryGate>());
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
        FreedesktopDispatch dispatch(std::make_shared<DeliveryGate>());
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
    FreedesktopDispatch later(std::make_shared<DeliveryGate>());
    later.onMainThread([&] { isLaterPostHeard = true; });
    EXPECT_TRUE(waitFor([&] { return isLaterPostHeard; }));
    EXPECT_EQ(ranAfterwards, 0);
    EXPECT_EQ(hadRunAtTheEnd, hasRunInBackground);
}

TEST(FreedesktopDispatchTest, TimerRepeatsUntilItsSubscriptionEnds)
{
    FreedesktopDispatch dispatch(std::make_shared<DeliveryGate>());
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
    FreedesktopDispatch dispatch(std::make_shared<DeliveryGate>());
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

TEST(FreedesktopDispatchTest, PostedWorkWaitsInOrderWhileTheGateIsClosed)
{
    auto const gate = std::make_shared<DeliveryGate>();
    FreedesktopDispatch dispatch(gate);
    std::vector<int> ran;
    auto const post = [&](int number) { dispatch.onMainThread([&, number] { ran.push_back(number); }); };
    post(1);
    {
        DeliveryGate::Closure const outer(*gate);
        {
            DeliveryGate::Closure const inner(*gate);
            post(2);
            serveEvents();
        }
        post(3);
        serveEvents();
        EXPECT_THAT(ran, ElementsAre());
        post(4);
    }
    post(5);
    EXPECT_THAT(ran, ElementsAre());
    EXPECT_TRUE(waitFor([&] { return ran.size() == 5; }));
    EXPECT_THAT(ran, ElementsAre(1, 2, 3, 4, 5));
}

TEST(FreedesktopDispatchTest, WorkThatWaitsAtTheGateDoesNotRunAfterTheEnd)
{
    auto const gate = std::make_shared<DeliveryGate>();
    int ran = 0;
    {
        DeliveryGate::Closure const closure(*gate);
        FreedesktopDispatch dispatch(gate);
        auto const timer = dispatch.repeatingTimer(std::chrono::milliseconds(1), [&] { ++ran; });
        bool hasPassed = false;
        dispatch.onMainThread([&] { ++ran; });
        QTimer::singleShot(50, [&] { hasPassed = true; });
        EXPECT_TRUE(waitFor([&] { return hasPassed; }));
    }
    serveEvents();
    EXPECT_EQ(ran, 0);
}

TEST(FreedesktopDispatchTest, TimerThatFiredSeveralTimesWhileTheGateIsClosedComesOnceAfterwards)
{
    auto const gate = std::make_shared<DeliveryGate>();
    FreedesktopDispatch dispatch(gate);
    int held = 0;
    int free = 0;
    auto const timer = dispatch.repeatingTimer(std::chrono::milliseconds(10), [&] { ++held; });
    {
        DeliveryGate::Closure const closure(*gate);
        QTimer counter;
        QObject::connect(&counter, &QTimer::timeout, [&] { ++free; });
        counter.start(10);
        EXPECT_TRUE(waitFor([&] { return free >= 10; }));
        EXPECT_EQ(held, 0);
    }
    // Both come from the same pass: what waited, and at most one firing of its own.
    QCoreApplication::processEvents();
    EXPECT_GE(held, 1);
    EXPECT_LE(held, 2);
    EXPECT_TRUE(waitFor([&] { return held >= 4; }));
}

TEST(FreedesktopDispatchTest, TimerWhoseSubscriptionEndsWhileTheGateIsClosedDoesNotCome)
{
    auto const gate = std::make_shared<DeliveryGate>();
    FreedesktopDispatch dispatch(gate);
    int fired = 0;
    auto timer = dispatch.repeatingTimer(std::chrono::milliseconds(1), [&] { ++fired; });
    {
        DeliveryGate::Closure const closure(*gate);
        bool hasPassed = false;
        QTimer::singleShot(50, [&] { hasPassed = true; });
        EXPECT_TRUE(waitFor([&] { return hasPassed; }));
        timer.end();
    }
    serveEvents();
    EXPECT_EQ(fired, 0);
}

TEST(FreedesktopDispatchTest, SubscriptionMayOutliveTheDispatch)
{
    Subscription timer;
    int fired = 0;
    {
        FreedesktopDispatch dispatch(std::make_shared<DeliveryGate>());
        timer = dispatch.repeatingTimer(std::chrono::milliseconds(1), [&] { ++fired; });
    }
    timer.end();
    EXPECT_EQ(fired, 0);
}

}
}
