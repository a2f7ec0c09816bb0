#include "Fakes/TemporaryFolder.h"
#include "Freedesktop/Session/ApplicationList.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <map>

namespace marrowick {

namespace {

class ApplicationListTest : public testing::Test {
protected:
    void install(std::string const& id, std::string const& more = {}, std::string const& exec = "true")
    {
        std::ofstream(folder_.url().path() + "/" + id + ".desktop")
            << "[Desktop Entry]\nType=Application\nName=Name of " << id << "\nExec=" << exec << "\n"
            << more;
        entries_.refresh();
    }

    ClientWindow window(std::string const& instance, std::string const& wmClass)
    {
        ClientWindow window;
        window.id = ++lastID_;
        window.instanceName = instance;
        window.className = wmClass;
        return window;
    }

    std::string identifierOf(ClientWindow const& window)
    {
        return factsOfWindow(window, rules_).identifier.value_or("none");
    }

    std::vector<ApplicationFacts> list(std::vector<ClientWindow> windows, xcb_window_t active = XCB_WINDOW_NONE)
    {
        return applicationsOfWindows({ std::move(windows), active }, rules_);
    }

    TemporaryFolder folder_;
    DesktopEntries entries_ { { folder_.url().path() } };
    std::map<pid_t, std::string> executables_;
    ApplicationRules rules_ { entries_, "org.marrowick.Marrowick", 4711,
        [this](pid_t pid) { return executables_[pid]; } };
    xcb_window_t lastID_ = 100;
};

}

TEST_F(ApplicationListTest, WindowsAreJoinedToEntriesInTheOrderOfTheRules)
{
    // Each row adds an entry that takes precedence over all before it.
    auto target = window("the-instance", "The-Class");
    target.gtkApplicationID = "org.example.Gtk";
    target.pid = 12;
    executables_[12] = "/usr/bin/the-program";

    EXPECT_EQ(identifierOf(target), "The-Class");
    install("by-executable", {}, "sh");
    EXPECT_EQ(identifierOf(target), "The-Class");
    executables_[12] = "/bin/sh";
    EXPECT_EQ(identifierOf(target), "by-executable");
    install("the-instance");
    EXPECT_EQ(identifierOf(target), "the-instance");
    install("the-class");
    EXPECT_EQ(identifierOf(target), "the-class");
    install("The-Class");
    EXPECT_EQ(identifierOf(target), "The-Class");
    EXPECT_EQ(factsOfWindow(target, rules_).name, "Name of The-Class");
    install("org.example.Gtk");
    EXPECT_EQ(identifierOf(target), "org.example.Gtk");
    install("wm-class", "StartupWMClass=The-Class\n");
    EXPECT_EQ(identifierOf(target), "wm-class");
    install("wm-instance", "StartupWMClass=the-instance\n");
    EXPECT_EQ(identifierOf(target), "wm-instance");
}

TEST_F(ApplicationListTest, AJoinedApplicationHasTheEntrysNameAndFile)
{
    install("viewer");
    auto const facts = factsOfWindow(window("viewer", "Viewer"), rules_);
    EXPECT_EQ(facts.identifier, "viewer");
    EXPECT_EQ(facts.name, "Name of viewer");
    EXPECT_EQ(facts.bundleURL, FileURL(folder_.url().path() + "/viewer.desktop"));
}

TEST_F(ApplicationListTest, AnUnknownApplicationHasItsClassForIdentifierAndName)
{
    auto const facts = factsOfWindow(window("x", "Strange"), rules_);
    EXPECT_EQ(facts.identifier, "Strange");
    EXPECT_EQ(facts.name, "Strange");
    EXPECT_EQ(facts.bundleURL, std::nullopt);
}

TEST_F(ApplicationListTest, WithoutAClassThereIsNoIdentifier)
{
    auto nameless = window("", "");
    nameless.pid = 12;
    executables_[12] = "/opt/tool";
    auto const facts = factsOfWindow(nameless, rules_);
    EXPECT_EQ(facts.identifier, std::nullopt);
    EXPECT_EQ(facts.name, "tool");
    EXPECT_EQ(factsOfWindow(window("", ""), rules_).name, std::nullopt);
    // Windows that tell nothing are not thrown together, those of one process are.
    EXPECT_EQ(list({ nameless, window("", ""), window("", ""), nameless }).size(), 3u);
}

TEST_F(ApplicationListTest, AnEntryWhoseProgramIsMissingIsNotJoined)
{
    install("viewer", {}, "marrowick-no-such-program");
    EXPECT_EQ(factsOfWindow(window("viewer", "Viewer"), rules_).name, "Viewer");
}

TEST_F(ApplicationListTest, AProcessOfAnotherMachineIsNotLookedUp)
{
    install("shell", {}, "sh");
    executables_[12] = "/bin/sh";
    auto remote = window("a", "Remote");
    remote.pid = 12;
    remote.isLocal = false;
    EXPECT_EQ(identifierOf(remote), "Remote");
    remote.isLocal = true;
    EXPECT_EQ(identifierOf(remote), "shell");
}

TEST_F(ApplicationListTest, OneRecordPerApplicationWhereItsFirstWindowStands)
{
    install("b");
    auto const applications
        = list({ window("x", "C"), window("b", "B"), window("y", "C"), window("z", "A"), window("b", "Other") });
    ASSERT_EQ(applications.size(), 3u);
    EXPECT_EQ(applications[0].identifier, "C");
    EXPECT_EQ(applications[1].identifier, "b");
    EXPECT_EQ(applications[2].identifier, "A");
}

TEST_F(ApplicationListTest, AccessoryOnlyWhenAllWindowsSkipTheTaskbar)
{
    auto panel = window("p", "Panel");
    panel.skipsTaskbar = true;
    auto palette = window("d", "Draw");
    palette.skipsTaskbar = true;
    auto const applications = list({ panel, palette, window("d", "Draw"), panel });
    ASSERT_EQ(applications.size(), 2u);
    EXPECT_EQ(applications[0].policy, ActivationPolicy::accessory);
    EXPECT_EQ(applications[1].policy, ActivationPolicy::regular);
}

TEST_F(ApplicationListTest, HiddenOnlyWhenAllWindowsAreMinimised)
{
    auto minimised = window("a", "A");
    minimised.isMinimised = true;
    auto half = window("b", "B");
    half.isMinimised = true;
    auto const applications = list({ minimised, half, window("b", "B"), minimised });
    ASSERT_EQ(applications.size(), 2u);
    EXPECT_TRUE(applications[0].isHidden);
    EXPECT_FALSE(applications[1].isHidden);
}

TEST_F(ApplicationListTest, TheActiveApplicationOwnsTheActiveWindow)
{
    auto const first = window("a", "A");
    auto const second = window("a", "A");
    auto const applications = list({ first, second, window("b", "B") }, second.id);
    EXPECT_TRUE(applications[0].isActive);
    EXPECT_FALSE(applications[1].isActive);
    EXPECT_FALSE(list({ first, second })[0].isActive);
}

TEST_F(ApplicationListTest, OwnWindowsHaveTheProgramsIdentifierWhateverTheySay)
{
    auto byProcess = window("anything", "Anything");
    byProcess.pid = 4711;
    auto elsewhere = window("anything", "Anything");
    elsewhere.pid = 4711;
    elsewhere.isLocal = false;
    EXPECT_EQ(identifierOf(byProcess), "org.marrowick.Marrowick");
    EXPECT_EQ(identifierOf(window("x", "org.marrowick.Marrowick")), "org.marrowick.Marrowick");
    EXPECT_EQ(identifierOf(window("marrowick", "marrowick")), "org.marrowick.Marrowick");
    EXPECT_EQ(identifierOf(window("marrowick", "Marrowick")), "org.marrowick.Marrowick");
    EXPECT_EQ(identifierOf(elsewhere), "Anything");
    EXPECT_EQ(factsOfWindow(byProcess, rules_).name, "Marrowick");
}

}
