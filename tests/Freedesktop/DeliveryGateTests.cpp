#include "Freedesktop/DeliveryGate.h"

#include <QCoreApplication>

#include <gmock/gmock.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace marrowick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DeliveryGateTest : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        static int count = 1;
        static char name[] = "test";
        static char* arguments[] = { name, nullptr };
        application_ = std::make_unique<QCoreApplication>(count, arguments);
    }
    static void TearDownTestSuite() { application_.reset(); }

    void deliver(std::string name)
    {
        gate_.deliver([this, name = std::move(name)] { delivered_.push_back(name); });
    }

    static void serveEvents()
    {
        for (int i = 0; i < 10; ++i)
            QCoreApplication::processEvents();
    }

    DeliveryGate gate_;
    std::vector<std::string> delivered_;

private:
    static inline std::unique_ptr<QCoreApplication> application_;
};

TEST_F(DeliveryGateTest, AnOpenGateDeliversAtOnce)
{
    EXPECT_FALSE(gate_.isClosed());
    deliver("one");
    EXPECT_THAT(delivered_, ElementsAre("one"));
}

TEST_F(DeliveryGateTest, AClosedGateDeliversNothing)
{
    DeliveryGate::Closure const closure(gate_);
    EXPECT_TRUE(gate_.isClosed());
    deliver("one");
    serveEvents();
    EXPECT_THAT(delivered_, IsEmpty());
}

TEST_F(DeliveryGateTest, WhatWaitedComesFromTheEventLoopInItsOrder)
{
    {
        DeliveryGate::Closure const closure(gate_);
        deliver("one");
        deliver("two");
    }
    EXPECT_FALSE(gate_.isClosed());
    EXPECT_THAT(delivered_, IsEmpty());
    serveEvents();
    EXPECT_THAT(delivered_, ElementsAre("one", "two"));
}

TEST_F(DeliveryGateTest, WhatComesBeforeTheWaitingHadTheirTurnQueuesBehindThem)
{
    {
        DeliveryGate::Closure const closure(gate_);
        deliver("one");
    }
    deliver("two");
    EXPECT_THAT(delivered_, IsEmpty());
    serveEvents();
    EXPECT_THAT(delivered_, ElementsAre("one", "two"));
}

TEST_F(DeliveryGateTest, OnlyTheEndOfTheOutermostClosureOpensTheGate)
{
    {
        DeliveryGate::Closure const outer(gate_);
        {
            DeliveryGate::Closure const inner(gate_);
            deliver("one");
        }
        EXPECT_TRUE(gate_.isClosed());
        serveEvents();
        EXPECT_THAT(delivered_, IsEmpty());
    }
    serveEvents();
    EXPECT_THAT(delivered_, ElementsAre("one"));
}

TEST_F(DeliveryGateTest, AClosureThatFollowsAtOnceHoldsTheWaitingBackAgain)
{
    std::optional<DeliveryGate::Closure> closure(std::in_place, gate_);
    deliver("one");
    closure.reset();
    closure.emplace(gate_);
    serveEvents();
    EXPECT_THAT(delivered_, IsEmpty());
    closure.reset();
    serveEvents();
    EXPECT_THAT(delivered_, ElementsAre("one"));
}

TEST_F(DeliveryGateTest, ADeliveryMayCloseTheGateAndTheRestWaitsOn)
{
    {
        DeliveryGate::Closure const closure(gate_);
        gate_.deliver([this] {
            DeliveryGate::Closure const alert(gate_);
            deliver("three");
            serveEvents();
            delivered_.push_back("one");
        });
        deliver("two");
    }
    serveEvents();
    EXPECT_THAT(delivered_, ElementsAre("one", "two", "three"));
}

TEST_F(DeliveryGateTest, TheRestWaitsAsLongAsADeliveryKeepsTheGateClosed)
{
    std::optional<DeliveryGate::Closure> kept;
    {
        DeliveryGate::Closure const closure(gate_);
        gate_.deliver([&] { kept.emplace(gate_); });
        deliver("later");
    }
    serveEvents();
    ASSERT_TRUE(kept);
    EXPECT_THAT(delivered_, IsEmpty());
    kept.reset();
    serveEvents();
    EXPECT_THAT(delivered_, ElementsAre("later"));
}

TEST_F(DeliveryGateTest, WhatWaitsEndsWithTheGate)
{
    auto const witness = std::make_shared<int>(0);
    {
        DeliveryGate gate;
        DeliveryGate::Closure const closure(gate);
        gate.deliver([witness] { ++*witness; });
    }
    serveEvents();
    EXPECT_EQ(*witness, 0);
    EXPECT_EQ(witness.use_count(), 1);
}

TEST_F(DeliveryGateTest, AnOpenGateTurnsNobodyAway)
{
    EXPECT_FALSE(gate_.turnsUserAway());
}

TEST_F(DeliveryGateTest, TheReasonOfTheLatestClosureIsShownToWhomIsTurnedAway)
{
    std::vector<std::string> shown;
    DeliveryGate::Closure const outer(gate_, [&] { shown.push_back("outer"); });
    EXPECT_TRUE(gate_.turnsUserAway());
    {
        DeliveryGate::Closure const inner(gate_, [&] { shown.push_back("inner"); });
        EXPECT_TRUE(gate_.turnsUserAway());
    }
    EXPECT_TRUE(gate_.turnsUserAway());
    EXPECT_THAT(shown, ElementsAre("outer", "inner", "outer"));
}

TEST_F(DeliveryGateTest, AClosureWithoutAReasonTurnsAwayAllTheSame)
{
    DeliveryGate::Closure const closure(gate_);
    EXPECT_TRUE(gate_.turnsUserAway());
}

}
}
