#include "Freedesktop/Session/FinderQuestionTest.h"
#include "Freedesktop/Session/TestDisplay.h"

#include <algorithm>

namespace marrowick {

namespace {

/// A file manager with two windows, and a real window manager.
class FinderStackingTest : public FinderQuestionTest {
public:
    ~FinderStackingTest() override
    {
        windowManager_.end();
        display_.withdraw();
    }

protected:
    /// Waits until the window manager manages. It oversees requests that come while it starts, until something else
    /// happens, such as a property that changes.
    void SetUp() override
    {
        ASSERT_TRUE(waitFor([&] {
            display_.setText(display_.root(), "_MARROWICK_TEST", "x");
            display_.synchronise();
            return isManaged(first_) && isManaged(second_);
        }));
        manager_.tell({ { first_, "file:///first", {}, true }, { second_, "file:///second", {} } });
    }

    bool isManaged(xcb_window_t window)
    {
        auto const listed = connection_->collectNumbers(connection_->request(
            connection_->root(), connection_->atom(XAtom::netClientListStacking), XCB_ATOM_WINDOW, 4096));
        return std::find(listed.begin(), listed.end(), window) != listed.end();
    }
    void perform(std::string const& command, xcb_window_t window, std::string const& argument = {})
    {
        ASSERT_EQ(manager_.perform(command + " " + std::to_string(window) + " " + argument), "ok");
    }
    bool becomes(std::string const& folder)
    {
        return waitFor([&] { return target() == folder; });
    }

    TestDisplay display_;
    StartedProgram windowManager_ { { "openbox", "--sm-disable" } };
    FileManagerProcess manager_;
    xcb_window_t first_ = manager_.open();
    xcb_window_t second_ = manager_.open();
};

/// A window manager that the test plays itself, with two windows, the second one on top.
class ToldStackingTest : public FinderQuestionTest {
public:
    ~ToldStackingTest() override
    {
        display_.remove(display_.root(), "_NET_CURRENT_DESKTOP");
        display_.withdraw();
    }

protected:
    ToldStackingTest()
    {
        display_.setNumbers(display_.root(), "_NET_CLIENT_LIST_STACKING", "WINDOW", { lower_, upper_ });
        display_.synchronise();
        manager_.tell({ { lower_, "file:///lower", {} }, { upper_, "file:///upper", {} } });
    }

    TestDisplay display_;
    FileManagerProcess manager_;
    xcb_window_t lower_ = display_.makeWindow("test-files", "Test-Files");
    xcb_window_t upper_ = display_.makeWindow("test-files", "Test-Files");
};

}

TEST_F(ToldStackingTest, AWindowManagerWithoutAHiddenStateSaysIconic)
{
    EXPECT_EQ(target(), "file:///upper");
    display_.setNumbers(upper_, "WM_STATE", "WM_STATE", { 3, 0 });
    display_.synchronise();
    EXPECT_EQ(target(), "file:///lower");
    display_.setAtoms(display_.root(), "_NET_SUPPORTED", { "_NET_WM_STATE_HIDDEN" });
    display_.synchronise();
    EXPECT_EQ(target(), "file:///upper");
}

TEST_F(ToldStackingTest, AWindowOnAllWorkspacesIsHere)
{
    display_.setNumbers(display_.root(), "_NET_CURRENT_DESKTOP", "CARDINAL", { 0 });
    display_.setNumbers(upper_, "_NET_WM_DESKTOP", "CARDINAL", { 1 });
    display_.synchronise();
    EXPECT_EQ(target(), "file:///lower");
    display_.setNumbers(upper_, "_NET_WM_DESKTOP", "CARDINAL", { 0xFFFF'FFFF });
    display_.synchronise();
    EXPECT_EQ(target(), "file:///upper");
}

TEST_F(ToldStackingTest, AWindowThatTheListNamesButIsGoneDoesNoHarm)
{
    display_.destroy(upper_);
    manager_.tell({ { lower_, "file:///lower", {} }, { 99, "file:///unknown", {}, true } });
    EXPECT_EQ(target(), "file:///lower");
}

TEST_F(FinderStackingTest, TheTopmostWindowIsInFrontWhateverElseIsActive)
{
    perform("raise", first_);
    EXPECT_TRUE(becomes("file:///first"));
    perform("raise", second_);
    EXPECT_TRUE(becomes("file:///second"));
}

TEST_F(FinderStackingTest, WindowsOfOtherProgramsDoNotCount)
{
    perform("raise", first_);
    EXPECT_TRUE(becomes("file:///first"));
    auto const other = display_.makeWindow("other", "Other");
    display_.show(other);
    ASSERT_TRUE(waitFor([&] { return isManaged(other); }));
    EXPECT_EQ(target(), "file:///first");
    display_.destroy(other);
}

TEST_F(FinderStackingTest, TheTopmostWindowOfSeveralManagersIsInFront)
{
    FileManagerProcess another({ "org.marrowick.FileManager.Another" });
    auto const third = another.open();
    another.tell({ { third, "file:///third", {} } });
    ASSERT_TRUE(waitFor([&] { return isManaged(third); }));
    another.perform("raise " + std::to_string(third));
    EXPECT_TRUE(becomes("file:///third"));
    perform("raise", first_);
    EXPECT_TRUE(becomes("file:///first"));
}

TEST_F(FinderStackingTest, AMinimisedWindowIsNotInFrontWhileAnotherIsShown)
{
    perform("raise", first_);
    EXPECT_TRUE(becomes("file:///first"));
    perform("minimise", first_);
    EXPECT_TRUE(becomes("file:///second"));
    perform("minimise", second_);
    EXPECT_TRUE(waitFor([&] { return !target().empty(); }));
}

TEST_F(FinderStackingTest, AWindowOnAnotherWorkspaceIsNotInFrontWhileOneIsShownHere)
{
    perform("raise", first_);
    EXPECT_TRUE(becomes("file:///first"));
    perform("workspace", first_, "1");
    EXPECT_TRUE(becomes("file:///second"));
    perform("workspace", second_, "1");
    EXPECT_TRUE(waitFor([&] { return !target().empty(); }));
}

TEST_F(FinderStackingTest, TheDesktopLiesLowest)
{
    auto const desktop = manager_.open("DESKTOP");
    ASSERT_TRUE(waitFor([&] { return isManaged(desktop); }));
    manager_.tell({ { desktop, "file:///desktop", {}, true }, { first_, "file:///first", {} } });
    perform("raise", desktop);
    EXPECT_EQ(target(), "file:///first");
    perform("minimise", first_);
    EXPECT_TRUE(becomes("file:///desktop"));
}

TEST_F(FinderStackingTest, AWindowThatIsGoneGivesWayToTheNext)
{
    perform("raise", first_);
    EXPECT_TRUE(becomes("file:///first"));
    perform("close", first_);
    EXPECT_TRUE(becomes("file:///second"));
}

}
