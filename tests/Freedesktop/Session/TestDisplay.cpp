#include "Freedesktop/Session/TestDisplay.h"

#include "Freedesktop/Session/SessionSupport.h"

#include <cstdlib>
#include <cstring>

namespace marrowick {

TestDisplay::TestDisplay()
    : connection_(xcb_connect(nullptr, nullptr))
{
    if (xcb_connection_has_error(connection_))
        std::abort();
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
}

TestDisplay::~TestDisplay()
{
    xcb_disconnect(connection_);
}

xcb_atom_t TestDisplay::atom(char const* name)
{
    auto const length = static_cast<std::uint16_t>(std::strlen(name));
    auto* const reply = xcb_intern_atom_reply(connection_, xcb_intern_atom(connection_, 0, length, name), nullptr);
    auto const atom = reply->atom;
    std::free(reply);
    return atom;
}

xcb_window_t TestDisplay::makeWindow(std::string const& instance, std::string const& wmClass)
{
    auto const window = xcb_generate_id(connection_);
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, root_, 10, 10, 120, 80, 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    if (!wmClass.empty())
        setText(window, "WM_CLASS", instance + std::string(1, '\0') + wmClass + std::string(1, '\0'), "STRING");
    return window;
}

void TestDisplay::show(xcb_window_t window)
{
    xcb_map_window(connection_, window);
    synchronise();
}

void TestDisplay::minimise(xcb_window_t window)
{
    xcb_client_message_event_t message {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom("WM_CHANGE_STATE");
    message.data.data32[0] = 3;
    xcb_send_event(connection_, 0, root_, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
        reinterpret_cast<char const*>(&message));
    synchronise();
}

void TestDisplay::destroy(xcb_window_t window)
{
    xcb_destroy_window(connection_, window);
    synchronise();
}

void TestDisplay::setText(xcb_window_t window, char const* property, std::string_view value, char const* type)
{
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom(property), atom(type), 8,
        static_cast<std::uint32_t>(value.size()), value.data());
}

void TestDisplay::setNumbers(
    xcb_window_t window, char const* property, char const* type, std::vector<std::uint32_t> const& values)
{
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom(property), atom(type), 32,
        static_cast<std::uint32_t>(values.size()), values.data());
}

void TestDisplay::setAtoms(xcb_window_t window, char const* property, std::vector<char const*> const& names)
{
    std::vector<std::uint32_t> atoms;
    for (auto const* name : names)
        atoms.push_back(atom(name));
    setNumbers(window, property, "ATOM", atoms);
}

std::vector<std::uint32_t> TestDisplay::numbers(xcb_window_t window, char const* property)
{
    constexpr std::uint32_t mostNumbers = 4096;
    auto const question
        = xcb_get_property(connection_, 0, window, atom(property), XCB_GET_PROPERTY_TYPE_ANY, 0, mostNumbers);
    auto* const reply = xcb_get_property_reply(connection_, question, nullptr);
    std::vector<std::uint32_t> values;
    if (reply && reply->format == 32) {
        auto const* const first = static_cast<std::uint32_t const*>(xcb_get_property_value(reply));
        values.assign(first, first + reply->value_len);
    }
    std::free(reply);
    return values;
}

void TestDisplay::setPID(xcb_window_t window, pid_t pid)
{
    setNumbers(window, "_NET_WM_PID", "CARDINAL", { static_cast<std::uint32_t>(pid) });
}

void TestDisplay::remove(xcb_window_t window, char const* property)
{
    xcb_delete_property(connection_, window, atom(property));
}

void TestDisplay::announce(std::vector<xcb_window_t> const& windows, xcb_window_t active)
{
    setNumbers(root_, "_NET_CLIENT_LIST", "WINDOW", windows);
    announceActive(active);
}

void TestDisplay::announceActive(xcb_window_t active)
{
    setNumbers(root_, "_NET_ACTIVE_WINDOW", "WINDOW", { active });
    synchronise();
}

void TestDisplay::withdraw()
{
    for (auto const* property : { "_NET_CLIENT_LIST", "_NET_CLIENT_LIST_STACKING", "_NET_ACTIVE_WINDOW",
             "_NET_SUPPORTED", "_NET_SUPPORTING_WM_CHECK" })
        remove(root_, property);
    synchronise();
}

void TestDisplay::hearMessages()
{
    std::uint32_t const eventMask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection_, root_, XCB_CW_EVENT_MASK, &eventMask);
    synchronise();
}

std::vector<TestDisplay::Message> TestDisplay::waitForMessages(char const* type, std::size_t count)
{
    std::vector<Message> messages;
    auto const wanted = atom(type);
    waitFor([&] {
        while (auto* const event = xcb_poll_for_event(connection_)) {
            xcb_client_message_event_t message {};
            if ((event->response_type & 0x7F) == XCB_CLIENT_MESSAGE)
                std::memcpy(&message, event, sizeof message);
            std::free(event);
            if (message.type == wanted)
                messages.push_back({ message.window, std::to_array(message.data.data32) });
        }
        return messages.size() >= count;
    });
    return messages;
}

void TestDisplay::synchronise()
{
    std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

}
