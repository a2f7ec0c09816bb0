#include "Fakes/TestPlatform.h"
#include "Platform/Platform.h"

#include <memory>
#include <thread>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace marrowick {
namespace {

TEST(PlatformDeathTest, AskingForServicesThatAreNotInstalledStops)
{
    EXPECT_DEATH(platform(), "before they are installed");
}

TEST(PlatformDeathTest, AskingForServicesAfterTheirEndStops)
{
    {
        TestPlatform const desktop;
        EXPECT_NE(platform().log, nullptr);
    }
    EXPECT_DEATH(platform(), "before they are installed");
}

TEST(PlatformDeathTest, InstallingServicesOverOthersStops)
{
    TestPlatform desktop;
    desktop.log.echoToStandardError();
    EXPECT_DEATH(PlatformScope { Platform {} }, "installed twice");
}

TEST(PlatformDeathTest, AskingForServicesOnAnotherThreadStops)
{
    TestPlatform desktop;
    desktop.log.echoToStandardError();
    EXPECT_DEATH(std::thread([] { platform(); }).join(), "another thread");
    EXPECT_DEATH(std::thread([] { assertMainThread(); }).join(), "another thread");
    assertMainThread();
}

TEST(PlatformDeathTest, AFatalErrorWritesOneLineToTheInstalledLog)
{
    TestPlatform desktop;
    desktop.log.echoToStandardError();
    EXPECT_DEATH(fatalError("Marrowick: a\nrule"), testing::StrEq("Marrowick: a\\x0Arule\n"));
}

TEST(PlatformDeathTest, AFatalErrorWithoutServicesGoesToStandardError)
{
    EXPECT_DEATH(fatalError("Marrowick: early"), testing::StrEq("Marrowick: early\n"));
}

TEST(PlatformScopeTest, TheThreadThatInstallsTheServicesIsTheMainThread)
{
    bool ran = false;
    std::thread([&] {
        TestPlatform const desktop;
        platform();
        assertMainThread();
        ran = true;
    }).join();
    EXPECT_TRUE(ran);
}

}
}
