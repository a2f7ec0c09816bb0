#include "Freedesktop/Session/DesktopFixtures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <filesystem>

namespace marrowick {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string applicationsFolder()
{
    return environmentVariable("XDG_DATA_HOME") + "/applications";
}

}

TEST_F(RunningApplicationsTest, WithoutAWindowManagerThereAreNone)
{
    display_.show(display_.makeWindow("a", "A"));
    EXPECT_THAT(identifiers(), IsEmpty());
}

TEST_F(RunningApplicationsTest, InTheOrderOfTheWindowManagersList)
{
    auto const c = display_.makeWindow("c", "C");
    auto const a = display_.makeWindow("a", "A");
    auto const b = display_.makeWindow("b", "B");
    display_.announce({ c, a, b, display_.makeWindow("a", "A") }, b);
    EXPECT_THAT(identifiers(), ElementsAre("C", "A", "B"));
    EXPECT_TRUE(find("B")->isActive());
    EXPECT_FALSE(find("A")->isActive());
}

TEST_F(RunningApplicationsTest, AnEntryInstalledMeanwhileIsFound)
{
    auto const window = display_.makeWindow("fresh", "Fresh");
    display_.announce({ window });
    EXPECT_THAT(identifiers(), ElementsAre("Fresh"));
    auto const path = applicationsFolder() + "/org.example.Fresh.desktop";
    writeFile(path, "[Desktop Entry]\nType=Application\nName=Fresh Name\nExec=true\nStartupWMClass=Fresh\n");
    EXPECT_THAT(identifiers(), ElementsAre("org.example.Fresh"));
    auto const application = find("org.example.Fresh");
    EXPECT_EQ(application->localizedName(), "Fresh Name");
    EXPECT_EQ(application->bundleURL(), FileURL(path));
    std::filesystem::remove(path);
    EXPECT_THAT(identifiers(), ElementsAre("Fresh"));
}

TEST_F(RunningApplicationsTest, TheGtkIdentifierAndTheProcessAreRead)
{
    StartedProgram const process({ "/bin/sleep", "100" });
    writeFile(
        applicationsFolder() + "/org.example.Gtk.desktop", "[Desktop Entry]\nType=Application\nName=Gtk\nExec=true\n");
    writeFile(applicationsFolder() + "/org.example.Sleeper.desktop",
        "[Desktop Entry]\nType=Application\nName=Sleeper\nExec=sleep\n");
    auto const gtk = display_.makeWindow("g", "G");
    display_.setText(gtk, "_GTK_APPLICATION_ID", "org.example.Gtk");
    auto const sleeper = display_.makeWindow("s", "S");
    display_.setPID(sleeper, process.pid());
    auto const remote = display_.makeWindow("r", "Remote");
    display_.setPID(remote, process.pid());
    display_.setText(remote, "WM_CLIENT_MACHINE", "elsewhere.example.org", "STRING");
    display_.announce({ gtk, sleeper, remote });
    EXPECT_THAT(identifiers(), ElementsAre("org.example.Gtk", "org.example.Sleeper", "Remote"));
    for (auto const* name : { "/org.example.Gtk.desktop", "/org.example.Sleeper.desktop" })
        std::filesystem::remove(applicationsFolder() + name);
}

TEST_F(RunningApplicationsTest, WindowsThatDoNotStandInATaskbarMakeAccessories)
{
    auto const skipping = display_.makeWindow("a", "Skipping");
    display_.setAtoms(skipping, "_NET_WM_STATE", { "_NET_WM_STATE_STICKY", "_NET_WM_STATE_SKIP_TASKBAR" });
    auto const dock = display_.makeWindow("a", "Dock");
    display_.setAtoms(dock, "_NET_WM_WINDOW_TYPE", { "_KDE_UNKNOWN", "_NET_WM_WINDOW_TYPE_DOCK" });
    auto const dialog = display_.makeWindow("a", "Dialog");
    display_.setAtoms(dialog, "_NET_WM_WINDOW_TYPE", { "_NET_WM_WINDOW_TYPE_DIALOG", "_NET_WM_WINDOW_TYPE_UTILITY" });
    auto const plain = display_.makeWindow("a", "Plain");
    display_.announce({ skipping, dock, dialog, plain });
    EXPECT_EQ(find("Skipping")->activationPolicy(), ActivationPolicy::accessory);
    EXPECT_EQ(find("Dock")->activationPolicy(), ActivationPolicy::accessory);
    EXPECT_EQ(find("Dialog")->activationPolicy(), ActivationPolicy::regular);
    EXPECT_EQ(find("Plain")->activationPolicy(), ActivationPolicy::regular);
}

TEST_F(RunningApplicationsTest, IconicCountsOnlyWhereTheHiddenStateIsUnknown)
{
    auto const window = display_.makeWindow("a", "A");
    display_.setNumbers(window, "WM_STATE", "WM_STATE", { 3, 0 });
    display_.announce({ window });
    EXPECT_TRUE(find("A")->isHidden());
    display_.setAtoms(display_.root(), "_NET_SUPPORTED", { "_NET_WM_STATE", "_NET_WM_STATE_HIDDEN" });
    display_.synchronise();
    EXPECT_FALSE(find("A")->isHidden());
    display_.setAtoms(window, "_NET_WM_STATE", { "_NET_WM_STATE_HIDDEN" });
    display_.synchronise();
    EXPECT_TRUE(find("A")->isHidden());
}

TEST_F(RunningApplicationsTest, AnActiveWindowThatIsNotListedYetCounts)
{
    auto const listed = display_.makeWindow("a", "A");
    auto const unlisted = display_.makeWindow("b", "B");
    display_.announce({ listed }, unlisted);
    EXPECT_THAT(identifiers(), ElementsAre("A", "B"));
    EXPECT_TRUE(find("B")->isActive());
}

TEST_F(RunningApplicationsTest, VanishedWindowsAreLeftOut)
{
    auto const gone = display_.makeWindow("gone", "Gone");
    auto const here = display_.makeWindow("here", "Here");
    display_.announce({ gone, 0x7FFFFFF, here, 0, 0xFFFFFFFF }, gone);
    display_.destroy(gone);
    EXPECT_THAT(identifiers(), ElementsAre("Here"));
}

TEST_F(RunningApplicationsTest, HostilePropertiesAreBounded)
{
    std::string const megabyte(1024 * 1024, 'x');
    auto const huge = display_.makeWindow("", "");
    display_.setText(huge, "WM_CLASS", "i" + std::string(1, '\0') + megabyte, "STRING");
    auto const wrongType = display_.makeWindow("", "");
    display_.setNumbers(wrongType, "WM_CLASS", "CARDINAL", { 1, 2, 3 });
    display_.setText(wrongType, "_NET_WM_PID", "text");
    display_.setText(wrongType, "_NET_WM_STATE", "text");
    display_.setNumbers(wrongType, "_GTK_APPLICATION_ID", "CARDINAL", { 1 });
    auto const latin = display_.makeWindow("a", "Caf\xE9");
    auto const utf8 = display_.makeWindow("a", "Caf\xC3\xA9s");
    auto const manyNULs = display_.makeWindow("", "");
    display_.setText(manyNULs, "WM_CLASS", std::string("in\0Class\0more\0\0\0", 17), "STRING");
    auto const halfClass = display_.makeWindow("", "");
    display_.setText(halfClass, "WM_CLASS", "only-one", "STRING");
    auto const onlyNULs = display_.makeWindow("", "");
    display_.setText(onlyNULs, "WM_CLASS", std::string(3, '\0'), "STRING");
    auto const negative = display_.makeWindow("a", "Negative");
    display_.setNumbers(negative, "_NET_WM_PID", "CARDINAL", { 0xFFFFFFFF });
    auto const nulID = display_.makeWindow("a", "NulID");
    display_.setText(nulID, "_GTK_APPLICATION_ID", std::string("x\0../../y", 9));
    display_.announce({ huge, wrongType, latin, utf8, manyNULs, halfClass, onlyNULs, negative, nulID });

    auto const found = identifiers();
    ASSERT_EQ(found.size(), 9u);
    EXPECT_EQ(found[0], std::string(1022, 'x'));
    EXPECT_EQ(found[1], "none");
    EXPECT_EQ(found[2], "Caf\xC3\xA9");
    EXPECT_EQ(found[3], "Caf\xC3\xA9s");
    EXPECT_EQ(found[4], "Class");
    EXPECT_EQ(found[5], "none");
    EXPECT_EQ(found[6], "none");
    EXPECT_EQ(found[7], "Negative");
    EXPECT_EQ(found[8], "NulID");
}

TEST_F(RunningApplicationsTest, HostileRootPropertiesAreBounded)
{
    display_.setText(display_.root(), "_NET_CLIENT_LIST", "text");
    display_.setText(display_.root(), "_NET_ACTIVE_WINDOW", "text");
    display_.synchronise();
    EXPECT_THAT(identifiers(), IsEmpty());
    auto const window = display_.makeWindow("a", "A");
    display_.announce(std::vector<xcb_window_t>(50'000, window));
    EXPECT_THAT(identifiers(), ElementsAre("A"));
}

TEST_F(RunningApplicationsTest, TheListOfACrashedWindowManagerIsNotBelieved)
{
    auto const check = display_.makeWindow("", "");
    auto const window = display_.makeWindow("a", "A");
    display_.announce({ window });
    display_.setNumbers(display_.root(), "_NET_SUPPORTING_WM_CHECK", "WINDOW", { check });
    display_.setNumbers(check, "_NET_SUPPORTING_WM_CHECK", "WINDOW", { check });
    display_.synchronise();
    EXPECT_THAT(identifiers(), ElementsAre("A"));
    display_.destroy(check);
    EXPECT_THAT(identifiers(), IsEmpty());
}

TEST_F(RunningApplicationsTest, AnApplicationThatQuitKeepsAnswering)
{
    auto const window = display_.makeWindow("a", "A");
    display_.announce({ window }, window);
    auto const application = find("A");
    display_.destroy(window);
    display_.announce({});
    EXPECT_THAT(identifiers(), IsEmpty());
    EXPECT_EQ(application->bundleIdentifier(), "A");
    EXPECT_EQ(application->localizedName(), "A");
    EXPECT_TRUE(application->isActive());
}

TEST_F(ManagedDesktopTest, RealWindowsAreListedActivatedAndMinimised)
{
    StartedProgram const first({ "xterm", "-class", "FirstTerm", "-e", "sleep", "100" });
    ASSERT_TRUE(waitFor([&] { return identifiers() == std::vector<std::string> { "FirstTerm" }; }))
        << testing::PrintToString(identifiers());
    StartedProgram const second({ "xterm", "-class", "SecondTerm", "-e", "sleep", "100" });
    ASSERT_TRUE(waitFor([&] { return identifiers() == std::vector<std::string> { "FirstTerm", "SecondTerm" }; }));

    ASSERT_EQ(runProgram({ "wmctrl", "-x", "-a", "FirstTerm" }), 0);
    EXPECT_TRUE(waitFor([&] { return find("FirstTerm")->isActive(); }));
    EXPECT_FALSE(find("SecondTerm")->isActive());

    EXPECT_FALSE(find("SecondTerm")->isHidden());
    ASSERT_EQ(runProgram({ "wmctrl", "-x", "-r", "SecondTerm", "-b", "add,hidden" }), 0);
    EXPECT_TRUE(waitFor([&] { return find("SecondTerm")->isHidden(); }));
    EXPECT_FALSE(find("FirstTerm")->isHidden());

    ASSERT_EQ(runProgram({ "wmctrl", "-x", "-r", "FirstTerm", "-b", "add,skip_taskbar" }), 0);
    EXPECT_TRUE(waitFor([&] { return find("FirstTerm")->activationPolicy() == ActivationPolicy::accessory; }));
    EXPECT_EQ(find("SecondTerm")->activationPolicy(), ActivationPolicy::regular);
}

TEST_F(ManagedDesktopTest, WithoutTheWindowManagerThereAreNone)
{
    display_.show(display_.makeWindow("a", "A"));
    ASSERT_TRUE(waitFor([&] { return !identifiers().empty(); }));
    manager_.end(SIGKILL);
    EXPECT_TRUE(waitFor([&] { return identifiers().empty(); }));
}

TEST(WithoutADisplay, NothingRunsAndNothingIsObserved)
{
    auto const display = environmentVariable("DISPLAY");
    setenv("DISPLAY", ":64000", 1);
    FreedesktopWorkspace workspace(
        std::make_shared<XConnection>(), std::make_shared<DeliveryGate>(), "org.marrowick.Marrowick");
    setenv("DISPLAY", display.c_str(), 1);
    EXPECT_THAT(workspace.runningApplications(BackgroundOnly::included), IsEmpty());
    EXPECT_FALSE(workspace.observeActivation([](auto const&) {}).isActive());
}

}
