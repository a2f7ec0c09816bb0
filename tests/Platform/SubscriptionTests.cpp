#include "Platform/Subscription.h"

#include <optional>
#include <utility>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

TEST(SubscriptionTest, AnEmptyOneIsNotActiveAndEndsWithoutEffect)
{
    Subscription subscription;
    EXPECT_FALSE(subscription.isActive());
    subscription.end();
    EXPECT_FALSE(subscription.isActive());
}

TEST(SubscriptionTest, EndsOnceByEnd)
{
    int ends = 0;
    {
        Subscription subscription([&] { ++ends; });
        EXPECT_TRUE(subscription.isActive());
        subscription.end();
        EXPECT_FALSE(subscription.isActive());
        EXPECT_EQ(ends, 1);
        subscription.end();
    }
    EXPECT_EQ(ends, 1);
}

TEST(SubscriptionTest, EndsOnceByDestruction)
{
    int ends = 0;
    {
        Subscription const subscription([&] { ++ends; });
        EXPECT_EQ(ends, 0);
    }
    EXPECT_EQ(ends, 1);
}

TEST(SubscriptionTest, MovingItAwayEndsNothing)
{
    int ends = 0;
    {
        Subscription second;
        {
            Subscription first([&] { ++ends; });
            second = std::move(first);
            Subscription third(std::move(second));
            second = std::move(third);
        }
        EXPECT_EQ(ends, 0);
        EXPECT_TRUE(second.isActive());
    }
    EXPECT_EQ(ends, 1);
}

TEST(SubscriptionTest, AssigningAnotherEndsTheFirst)
{
    int firstEnds = 0;
    int secondEnds = 0;
    Subscription subscription([&] { ++firstEnds; });
    subscription = Subscription([&] { ++secondEnds; });
    EXPECT_EQ(firstEnds, 1);
    EXPECT_EQ(secondEnds, 0);
}

TEST(SubscriptionTest, MovingItOntoItselfKeepsIt)
{
    int ends = 0;
    Subscription subscription([&] { ++ends; });
    auto& same = subscription;
    subscription = std::move(same);
    EXPECT_EQ(ends, 0);
    EXPECT_TRUE(subscription.isActive());
}

TEST(SubscriptionTest, MayEndWhileItIsEnding)
{
    int ends = 0;
    std::optional<Subscription> subscription;
    subscription.emplace([&] {
        ++ends;
        subscription->end();
        EXPECT_FALSE(subscription->isActive());
    });
    subscription->end();
    EXPECT_EQ(ends, 1);
}

}
}
