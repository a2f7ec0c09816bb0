#pragma once

#include <sys/types.h>
#include <xcb/xcb.h>

#include <string>
#include <vector>

namespace marrowick::benchmarks {

/// Many windows of as many applications, each of a process of its own as far as the window properties tell.
/// They stand on the screen until the end of this object, which also says what a window manager would: that they are there.
class WindowCrowd {
public:
    struct Window {
        std::string wmClass;
        /// Whether it brings its own picture along, in the sizes that are usual.
        bool hasPicture = false;
    };

    explicit WindowCrowd(std::vector<Window> const& windows);
    ~WindowCrowd();
    WindowCrowd(WindowCrowd const&) = delete;
    WindowCrowd& operator=(WindowCrowd const&) = delete;

    /// Whether there is a display to show windows on.
    bool isShown() const { return isShown_; }

private:
    xcb_atom_t atom(char const* name);
    void setNumbers(
        xcb_window_t window, char const* property, xcb_atom_t type, std::vector<std::uint32_t> const& numbers);
    void setText(xcb_window_t window, xcb_atom_t property, std::string const& text);
    xcb_window_t show(Window const& about);
    pid_t startProcess();

    xcb_connection_t* connection_;
    xcb_screen_t* screen_ = nullptr;
    std::vector<pid_t> processes_;
    bool isShown_ = false;
};

}
