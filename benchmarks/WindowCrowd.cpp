#include "WindowCrowd.h"

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <cstring>

namespace marrowick::benchmarks {

namespace {

constexpr std::array<std::uint32_t, 4> pictureSides { 16, 32, 48, 128 };

std::vector<std::uint32_t> pictures()
{
    std::vector<std::uint32_t> numbers;
    for (auto const side : pictureSides) {
        numbers.insert(numbers.end(), { side, side });
        numbers.insert(numbers.end(), std::size_t { side } * side, 0xFF3070B0);
    }
    return numbers;
}

std::string machineName()
{
    std::array<char, 256> name {};
    gethostname(name.data(), name.size() - 1);
    return name.data();
}

}

WindowCrowd::WindowCrowd(std::vector<Window> const& windows)
    : connection_(xcb_connect(nullptr, nullptr))
{
    if (xcb_connection_has_error(connection_))
        return;
    screen_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    std::vector<std::uint32_t> shown;
    for (auto const& window : windows)
        shown.push_back(show(window));
    setNumbers(screen_->root, "_NET_SUPPORTED", XCB_ATOM_ATOM, { atom("_NET_WM_STATE"), atom("_NET_WM_STATE_HIDDEN") });
    setNumbers(screen_->root, "_NET_CLIENT_LIST", XCB_ATOM_WINDOW, shown);
    setNumbers(screen_->root, "_NET_ACTIVE_WINDOW", XCB_ATOM_WINDOW, { shown.back() });
    // The answer comes when the server has done everything so far.
    std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    isShown_ = xcb_connection_has_error(connection_) == 0;
}

WindowCrowd::~WindowCrowd()
{
    xcb_disconnect(connection_);
    for (auto const process : processes_) {
        kill(process, SIGKILL);
        waitpid(process, nullptr, 0);
    }
}

/// A process that does nothing, and ends with this one at the latest.
pid_t WindowCrowd::startProcess()
{
    auto const process = fork();
    if (process == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        for (;;)
            pause();
    }
    if (process > 0)
        processes_.push_back(process);
    return process > 0 ? process : getppid();
}

xcb_atom_t WindowCrowd::atom(char const* name)
{
    auto const length = static_cast<std::uint16_t>(std::strlen(name));
    auto* const reply = xcb_intern_atom_reply(connection_, xcb_intern_atom(connection_, 0, length, name), nullptr);
    auto const found = reply ? reply->atom : xcb_atom_t { XCB_ATOM_NONE };
    std::free(reply);
    return found;
}

void WindowCrowd::setNumbers(
    xcb_window_t window, char const* property, xcb_atom_t type, std::vector<std::uint32_t> const& numbers)
{
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom(property), type, 32,
        static_cast<std::uint32_t>(numbers.size()), numbers.data());
}

void WindowCrowd::setText(xcb_window_t window, xcb_atom_t property, std::string const& text)
{
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_STRING, 8,
        static_cast<std::uint32_t>(text.size()), text.data());
}

xcb_window_t WindowCrowd::show(Window const& about)
{
    auto const window = xcb_generate_id(connection_);
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, screen_->root, 10, 10, 120, 80, 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    setText(window, XCB_ATOM_WM_CLASS, about.wmClass + '\0' + about.wmClass + '\0');
    setText(window, XCB_ATOM_WM_CLIENT_MACHINE, machineName());
    setNumbers(window, "_NET_WM_PID", XCB_ATOM_CARDINAL, { static_cast<std::uint32_t>(startProcess()) });
    setNumbers(window, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM, { atom("_NET_WM_WINDOW_TYPE_NORMAL") });
    if (about.hasPicture)
        setNumbers(window, "_NET_WM_ICON", XCB_ATOM_CARDINAL, pictures());
    xcb_map_window(connection_, window);
    return window;
}

}
