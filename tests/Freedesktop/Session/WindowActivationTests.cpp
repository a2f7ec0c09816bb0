#include "Freedesktop/Session/WindowActivation.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace marrowick {

namespace {

enum class Manner : std::uint8_t {
    shown,
    minimised,
    /// A panel, a palette and the like.
    skipping,
    skippingMinimised,
};
using enum Manner;

struct Told {
    xcb_window_t id;
    Manner manner = shown;
};

std::vector<ClientWindow> windowsOf(std::vector<Told> const& told)
{
    std::vector<ClientWindow> windows;
    for (auto const& [id, manner] : told) {
        ClientWindow window;
        window.id = id;
        window.isMinimised = manner == minimised || manner == skippingMinimised;
        window.skipsTaskbar = manner == skipping || manner == skippingMinimised;
        windows.push_back(window);
    }
    return windows;
}

/// "raise 1, activate 2", or "nothing".
std::string inWords(std::vector<WindowWish> const& wishes)
{
    std::string words;
    for (auto const& [window, kind] : wishes) {
        words += words.empty() ? "" : ", ";
        words += kind == WindowWish::Kind::raise ? "raise " : "activate ";
        words += std::to_string(window);
    }
    return words.empty() ? "nothing" : words;
}

struct ActivationCase {
    char const* rule;
    std::vector<Told> windows;
    /// From the bottom up; others' windows may be among them.
    std::vector<xcb_window_t> stacking;
    char const* all;
    char const* frontOnly;
};

std::vector<ActivationCase> const cases {
    { "no window", {}, { 1, 2 }, "nothing", "nothing" },
    { "one window", { { 1 } }, { 9, 1, 8 }, "activate 1", "activate 1" },
    { "from the bottom up, the front one last", { { 1 }, { 2 }, { 3 } }, { 2, 9, 3, 1 }, "raise 2, raise 3, activate 1",
        "activate 1" },
    { "unknown stacking: the first of the list is in front", { { 1 }, { 2 } }, {}, "raise 2, activate 1",
        "activate 1" },
    { "a window that is not stacked lies lowest", { { 1 }, { 2 } }, { 1 }, "raise 2, activate 1", "activate 1" },
    { "a minimised one stays so while others are shown", { { 1 }, { 2, minimised }, { 3 } }, { 1, 3, 2 },
        "raise 1, activate 3", "activate 3" },
    { "the shown one is in front of a minimised one above it", { { 1 }, { 2, minimised } }, { 1, 2 }, "activate 1",
        "activate 1" },
    { "all minimised: all come back", { { 1, minimised }, { 2, minimised }, { 3, minimised } }, { 3, 1, 2 },
        "activate 3, activate 1, activate 2", "activate 2" },
    { "panels stay where they are", { { 1 }, { 2, skipping }, { 3 } }, { 3, 1, 2 }, "raise 3, activate 1",
        "activate 1" },
    { "a minimised window rather than a panel", { { 1, minimised }, { 2, skipping } }, { 1, 2 }, "activate 1",
        "activate 1" },
    { "a panel where there is nothing else", { { 1, skipping }, { 2, skipping } }, { 2, 1 }, "activate 1",
        "activate 1" },
    { "a shown panel rather than a minimised one", { { 1, skippingMinimised }, { 2, skipping } }, { 2, 1 },
        "activate 2", "activate 2" },
};

}

TEST(WindowActivationTest, WishesFollowTheStackingAndWhatIsMinimised)
{
    for (auto const& [rule, windows, stacking, all, frontOnly] : cases) {
        EXPECT_EQ(inWords(wishesToActivate(windowsOf(windows), stacking, ActivationOptions::allWindows)), all) << rule;
        EXPECT_EQ(inWords(wishesToActivate(windowsOf(windows), stacking, ActivationOptions::none)), frontOnly) << rule;
    }
}

}
