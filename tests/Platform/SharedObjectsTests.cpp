#include "Fakes/TestPlatform.h"
#include "Platform/SharedObjects.h"

#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

std::vector<std::string> events;

struct Second {
    Second() { events.emplace_back("second made"); }
    ~Second() { events.emplace_back("second gone"); }
};

struct First {
    First() { events.emplace_back("first made"); }
    ~First()
    {
        // The services outlive the objects.
        platform().log->write("first gone");
        events.emplace_back("first gone");
    }
};

struct NeedsSecond {
    NeedsSecond()
        : second(sharedObject<Second>())
    {
        events.emplace_back("needs second made");
    }
    ~NeedsSecond() { events.emplace_back("needs second gone"); }
    Second& second;
};

class SharedObjectsTest : public testing::Test {
protected:
    SharedObjectsTest() { events.clear(); }
};

TEST_F(SharedObjectsTest, AnObjectIsMadeOnFirstUseAndOnce)
{
    TestPlatform const desktop;
    EXPECT_TRUE(events.empty());
    auto& object = sharedObject<Second>();
    EXPECT_EQ(&sharedObject<Second>(), &object);
    EXPECT_EQ(events, (std::vector<std::string> { "second made" }));
}

TEST_F(SharedObjectsTest, TheLastMadeGoesFirstAndAllBeforeTheServices)
{
    {
        TestPlatform const desktop;
        sharedObject<First>();
        sharedObject<Second>();
        events.clear();
    }
    EXPECT_EQ(events, (std::vector<std::string> { "second gone", "first gone" }));
}

TEST_F(SharedObjectsTest, AnObjectThatAnotherNeedsWhileItIsMadeOutlivesIt)
{
    {
        TestPlatform const desktop;
        sharedObject<NeedsSecond>();
    }
    EXPECT_EQ(
        events, (std::vector<std::string> { "second made", "needs second made", "needs second gone", "second gone" }));
}

TEST_F(SharedObjectsTest, TheNextInstallationGetsItsOwn)
{
    for (int installation = 0; installation < 2; ++installation) {
        events.clear();
        TestPlatform const desktop;
        sharedObject<Second>();
        EXPECT_EQ(events, (std::vector<std::string> { "second made" }));
    }
}

}
}
