#pragma once

#include <xcb/xcb.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace marrowick {

/// Another program of the session: an X client that makes windows and says about them, and about the root window,
/// what a test wants.
class TestDisplay {
public:
    TestDisplay();
    ~TestDisplay();
    TestDisplay(TestDisplay const&) = delete;
    TestDisplay& operator=(TestDisplay const&) = delete;

    xcb_window_t root() const { return root_; }
    /// A window that is not shown yet; it goes with the object.
    xcb_window_t makeWindow(std::string const& instance, std::string const& wmClass);
    void show(xcb_window_t window);
    /// Asks the window manager to minimise the window.
    void minimise(xcb_window_t window);
    void destroy(xcb_window_t window);

    void setText(xcb_window_t window, char const* property, std::string_view value, char const* type = "UTF8_STRING");
    void setNumbers(
        xcb_window_t window, char const* property, char const* type, std::vector<std::uint32_t> const& values);
    void setAtoms(xcb_window_t window, char const* property, std::vector<char const*> const& names);
    /// What the property says at this moment; empty where there is none.
    std::vector<std::uint32_t> numbers(xcb_window_t window, char const* property);
    void setPID(xcb_window_t window, pid_t pid);
    void remove(xcb_window_t window, char const* property);

    /// Plays the window manager: says which windows there are, and which is active.
    void announce(std::vector<xcb_window_t> const& windows, xcb_window_t active = XCB_WINDOW_NONE);
    void announceActive(xcb_window_t active);
    /// Takes back what `announce` said.
    void withdraw();

    /// From here on messages to the window manager are kept for `waitForMessages`.
    void hearMessages();
    struct Message {
        xcb_window_t window = XCB_WINDOW_NONE;
        std::array<std::uint32_t, 5> data {};
    };
    /// The messages of one kind, once there are `count`; fewer where they do not come in time.
    std::vector<Message> waitForMessages(char const* type, std::size_t count);

    /// Waits until the server has done everything so far.
    void synchronise();

private:
    xcb_atom_t atom(char const* name);

    xcb_connection_t* connection_ = nullptr;
    xcb_window_t root_ = XCB_WINDOW_NONE;
};

}
