#include "FileManagerProgram/Windows.h"

#include <unistd.h>

#include <cstdlib>

namespace {

constexpr std::uint32_t iconicState = 3;
constexpr std::uint32_t fromAPager = 2;

}

Windows::Windows()
    : connection_(xcb_connect(nullptr, nullptr))
{
    if (xcb_connection_has_error(connection_))
        std::abort();
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
}

Windows::~Windows()
{
    xcb_disconnect(connection_);
}

xcb_atom_t Windows::atom(std::string const& name)
{
    auto const question = xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data());
    auto* const reply = xcb_intern_atom_reply(connection_, question, nullptr);
    auto const atom = reply->atom;
    std::free(reply);
    return atom;
}

void Windows::request(xcb_window_t window, std::string const& message, std::uint32_t first, std::uint32_t second)
{
    xcb_client_message_event_t event {};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = atom(message);
    event.data.data32[0] = first;
    event.data.data32[1] = second;
    xcb_send_event(connection_, 0, root_, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
        reinterpret_cast<char const*>(&event));
    xcb_flush(connection_);
}

xcb_window_t Windows::open(std::string const& title, std::string const& type)
{
    auto const window = xcb_generate_id(connection_);
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, root_, 40, 300, 200, 100, 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    auto const setText = [&](xcb_atom_t property, xcb_atom_t textType, std::string const& text) {
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, property, textType, 8,
            static_cast<std::uint32_t>(text.size()), text.data());
    };
    auto const setNumber = [&](char const* property, xcb_atom_t numberType, std::uint32_t number) {
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom(property), numberType, 32, 1, &number);
    };
    setText(atom("_NET_WM_NAME"), atom("UTF8_STRING"), title);
    setText(XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, std::string("test-files\0Test-Files\0", 22));
    setNumber("_NET_WM_PID", XCB_ATOM_CARDINAL, static_cast<std::uint32_t>(getpid()));
    setNumber("_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM, atom("_NET_WM_WINDOW_TYPE_" + type));
    xcb_map_window(connection_, window);
    xcb_flush(connection_);
    return window;
}

void Windows::raise(xcb_window_t window)
{
    request(window, "_NET_RESTACK_WINDOW", fromAPager, 0);
}

void Windows::minimise(xcb_window_t window)
{
    request(window, "WM_CHANGE_STATE", iconicState);
}

void Windows::moveToWorkspace(xcb_window_t window, std::uint32_t workspace)
{
    request(window, "_NET_WM_DESKTOP", workspace, fromAPager);
}

void Windows::close(xcb_window_t window)
{
    xcb_destroy_window(connection_, window);
    xcb_flush(connection_);
}
