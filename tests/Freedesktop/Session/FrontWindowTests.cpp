#include "Freedesktop/Session/FrontWindow.h"

#include <gtest/gtest.h>

#include <string>

namespace marrowick {

namespace {

using enum WindowVisibility;

struct Told {
    char const* name;
    xcb_window_t id;
    bool isActive = false;
};

struct FrontWindowCase {
    char const* rule;
    std::vector<Told> windows;
    /// From the lowest to the topmost.
    std::vector<StackedWindow> stacking;
    char const* front;
};

FrontWindowCase const cases[] {
    { "no window", {}, { { 1, visible } }, "none" },
    { "the topmost", { { "a", 1 }, { "b", 2 }, { "c", 3 } }, { { 1, visible }, { 3, visible }, { 2, visible } }, "b" },
    { "stacking before the flag", { { "a", 1 }, { "b", 2, true } }, { { 2, visible }, { 1, visible } }, "a" },
    { "visible before minimised", { { "a", 1 }, { "b", 2 } }, { { 1, visible }, { 2, minimised } }, "a" },
    { "minimised ones alone", { { "a", 1 }, { "b", 2 } }, { { 1, minimised }, { 2, minimised } }, "b" },
    { "this workspace before another", { { "a", 1 }, { "b", 2 } }, { { 1, visible }, { 2, onOtherWorkspace } }, "a" },
    { "another workspace before minimised", { { "a", 1 }, { "b", 2 } }, { { 1, onOtherWorkspace }, { 2, minimised } },
        "a" },
    { "the desktop is lowest", { { "a", 1 }, { "b", 2 } }, { { 1, onOtherWorkspace }, { 2, desktop } }, "a" },
    { "the desktop is seen, a minimised window is not", { { "a", 1 }, { "b", 2 } },
        { { 2, desktop }, { 1, minimised } }, "b" },
    { "the desktop alone", { { "a", 1 } }, { { 1, desktop } }, "a" },
    { "unknown: the active one", { { "a", 0 }, { "b", 0, true }, { "c", 0, true } }, {}, "b" },
    { "unknown: else the first", { { "a", 0 }, { "b", 9 } }, {}, "a" },
    { "shown before unknown", { { "a", 0, true }, { "b", 2 } }, { { 2, visible } }, "b" },
    { "unknown before minimised", { { "a", 1 }, { "b", 9 } }, { { 1, minimised } }, "b" },
    { "unknown before the desktop", { { "a", 1 }, { "b", 9 } }, { { 1, desktop } }, "b" },
    { "one number twice", { { "a", 1 }, { "b", 1 } }, { { 1, visible } }, "a" },
};

}

TEST(FrontWindow, IsChosenByTheseRules)
{
    for (auto const& row : cases) {
        FileManagerWindows windows;
        for (auto const& told : row.windows)
            windows.push_back(
                { .id = told.id, .isActive = told.isActive, .folderURI = told.name, .selectedURIs = nullptr });
        auto const* const front = frontWindow(windows, row.stacking);
        EXPECT_EQ(front ? front->folderURI : "none", row.front) << row.rule;
    }
}

}
