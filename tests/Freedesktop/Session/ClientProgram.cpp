// A program with a window: "client-program CLASS FILE [option]...". It writes a line to FILE each time it is asked to close
// its window, and follows. Options:
//   --stays           does not follow
//   --hides           takes its window away, but goes on
//   --tells-no-pid    does not say which process it is
//   --elsewhere PID   says that it is process PID of another machine

#include <xcb/xcb.h>

#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <string_view>

namespace {

struct Options {
    bool stays = false;
    bool hides = false;
    bool tellsPID = true;
    std::uint32_t pid = static_cast<std::uint32_t>(getpid());
    std::string machine;
};

Options optionsIn(int argc, char** argv)
{
    Options options;
    for (int i = 3; i < argc; ++i) {
        std::string_view const word = argv[i];
        options.stays = options.stays || word == "--stays";
        options.hides = options.hides || word == "--hides";
        if (word == "--tells-no-pid")
            options.tellsPID = false;
        if (word == "--elsewhere" && i + 1 < argc) {
            options.machine = "elsewhere.example.org";
            options.pid = static_cast<std::uint32_t>(std::stoul(argv[++i]));
        }
    }
    return options;
}

xcb_atom_t atom(xcb_connection_t* connection, std::string_view name)
{
    auto const cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    auto* const reply = xcb_intern_atom_reply(connection, cookie, nullptr);
    auto const found = reply ? reply->atom : xcb_atom_t { XCB_ATOM_NONE };
    std::free(reply);
    return found;
}

void setNumber(
    xcb_connection_t* connection, xcb_window_t window, char const* property, xcb_atom_t type, std::uint32_t value)
{
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, atom(connection, property), type, 32, 1, &value);
}

void setText(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property, std::string const& text)
{
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_STRING, 8,
        static_cast<std::uint32_t>(text.size()), text.data());
}

xcb_window_t makeWindow(xcb_connection_t* connection, std::string const& wmClass, Options const& options)
{
    auto const* const screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    auto const window = xcb_generate_id(connection);
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, screen->root, 10, 10, 120, 80, 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    setText(connection, window, XCB_ATOM_WM_CLASS, wmClass + '\0' + wmClass + '\0');
    char host[256] = {};
    gethostname(host, sizeof host - 1);
    setText(connection, window, XCB_ATOM_WM_CLIENT_MACHINE, options.machine.empty() ? host : options.machine);
    if (options.tellsPID)
        setNumber(connection, window, "_NET_WM_PID", XCB_ATOM_CARDINAL, options.pid);
    setNumber(connection, window, "WM_PROTOCOLS", XCB_ATOM_ATOM, atom(connection, "WM_DELETE_WINDOW"));
    xcb_map_window(connection, window);
    xcb_flush(connection);
    return window;
}

}

int main(int argc, char** argv)
{
    auto const options = optionsIn(argc, argv);
    auto* const connection = xcb_connect(nullptr, nullptr);
    if (argc < 3 || xcb_connection_has_error(connection))
        return 2;
    auto const deletion = atom(connection, "WM_DELETE_WINDOW");
    auto const window = makeWindow(connection, argv[1], options);
    while (auto* const event = xcb_wait_for_event(connection)) {
        xcb_client_message_event_t message {};
        if ((event->response_type & 0x7F) == XCB_CLIENT_MESSAGE)
            std::memcpy(&message, event, sizeof message);
        std::free(event);
        if (message.data.data32[0] != deletion)
            continue;
        std::ofstream(argv[2], std::ios::app) << "asked\n";
        if (options.hides) {
            xcb_destroy_window(connection, window);
            xcb_flush(connection);
        } else if (!options.stays) {
            return 0;
        }
    }
    return 3;
}
