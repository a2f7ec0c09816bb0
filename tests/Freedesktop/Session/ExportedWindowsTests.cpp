#include "Freedesktop/Session/FinderQuestionTest.h"
#include "Freedesktop/Session/TestDisplay.h"
#include "Freedesktop/Session/TestFileManager.h"

namespace marrowick {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A file manager without a companion, which exports two windows, and a window manager that the test plays: the second
/// one is on top.
class ExportedWindowsTest : public FinderQuestionTest {
public:
    ~ExportedWindowsTest() override { display_.withdraw(); }

protected:
    ExportedWindowsTest()
    {
        name(lower_, "/files/window/1", "lower");
        name(upper_, "/files/window/2", "upper");
        display_.setNumbers(display_.root(), "_NET_CLIENT_LIST_STACKING", "WINDOW", { lower_, upper_ });
        display_.synchronise();
        service_.exportWindows("{'/files/window/2': ['file:///x/upper'], '/files/window/1': ['file:///x/lower']}");
    }

    void name(xcb_window_t window, char const* path, char const* title)
    {
        display_.setText(window, "_GTK_UNIQUE_BUS_NAME", service_.connectionName());
        display_.setText(window, "_GTK_WINDOW_OBJECT_PATH", path);
        display_.setText(window, "_NET_WM_NAME", title);
    }
    void raise(xcb_window_t upper, xcb_window_t lower)
    {
        display_.setNumbers(display_.root(), "_NET_CLIENT_LIST_STACKING", "WINDOW", { lower, upper });
        display_.synchronise();
    }

    TestDisplay display_;
    TestFileManager service_;
    xcb_window_t lower_ = display_.makeWindow("files", "Files");
    xcb_window_t upper_ = display_.makeWindow("files", "Files");
};

}

TEST_F(ExportedWindowsTest, TheFrontWindowsFolderIsKnownAndNothingIsSelected)
{
    EXPECT_EQ(target(), "file:///x/upper");
    EXPECT_THAT(selection(), IsEmpty());
    raise(lower_, upper_);
    EXPECT_EQ(target(), "file:///x/lower");
}

TEST_F(ExportedWindowsTest, OfSeveralTabsTheOneThatNamesTheWindowIsShown)
{
    service_.exportWindows("{'/files/window/2': ['file:///x/other', 'file:///x/upper']}");
    EXPECT_EQ(target(), "file:///x/upper");
    display_.setText(upper_, "_NET_WM_NAME", "other");
    display_.synchronise();
    EXPECT_EQ(target(), "file:///x/other");
    display_.setText(upper_, "_NET_WM_NAME", "Another Name");
    display_.synchronise();
    EXPECT_EQ(target(), "");
}

TEST_F(ExportedWindowsTest, TheyStandBesideTheWindowsOfACompanion)
{
    FileManagerProcess manager;
    auto const top = display_.makeWindow("test-files", "Test-Files");
    manager.tell({ { top, "file:///companion", { "file:///companion/x" } } });
    raise(top, upper_);
    EXPECT_EQ(target(), "file:///companion");
    EXPECT_THAT(selection(), ElementsAre("file:///companion/x"));
    raise(upper_, top);
    EXPECT_EQ(target(), "file:///x/upper");
    EXPECT_THAT(selection(), IsEmpty());
}

TEST_F(ExportedWindowsTest, OneThatHasACompanionIsAskedForItsStateOnly)
{
    service_.takeName("org.marrowick.FileManager.Test");
    target();
    auto const calls = service_.calls();
    ASSERT_EQ(calls.size(), 1);
    EXPECT_EQ(calls[0].method, "GetState");
}

TEST_F(ExportedWindowsTest, AValueOfAnotherTypeIsNoFailure)
{
    for (auto const* const value : { "['file:///x/upper']", "'text'", "{'/files/window/2': 'file:///x/upper'}" }) {
        service_.exportWindows(value);
        EXPECT_EQ(target(), "") << value;
    }
}

TEST_F(FinderQuestionTest, AFileManagerWithoutThePropertyIsNoFailure)
{
    TestFileManager service(TestFileManager::Behaviour::refuses);
    EXPECT_EQ(target(), "");
    EXPECT_THAT(selection(), IsEmpty());
    EXPECT_EQ(service.calls().size(), 2);
}

TEST_F(FinderQuestionTest, AFileManagerThatExportsNothingAndHangsIsWaitedForOnce)
{
    TestFileManager service(TestFileManager::Behaviour::keepsSilent);
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(target(), "");
    EXPECT_EQ(service.calls().size(), 1);
}

}
