#include "Freedesktop/Session/ClientWindows.h"

#include "Freedesktop/GLibOwners.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <string_view>

namespace marrowick {

namespace {

constexpr std::uint32_t maximumListBytes = 4096 * 4;
constexpr std::uint32_t maximumSupportedBytes = 1024 * 4;
constexpr std::uint32_t maximumAtomsBytes = 64 * 4;
constexpr std::uint32_t maximumTextBytes = 1024;
constexpr xcb_atom_t anyType = XCB_GET_PROPERTY_TYPE_ANY;
constexpr std::uint32_t iconicState = 3;

using Numbers = std::vector<std::uint32_t>;

bool contains(Numbers const& numbers, std::uint32_t number)
{
    return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

std::uint32_t firstOrNone(Numbers const& numbers)
{
    return numbers.empty() ? 0 : numbers.front();
}

/// The text up to its first NUL, which is taken off `rest` with it.
std::string takeText(std::string_view& rest)
{
    auto const text = rest.substr(0, rest.find('\0'));
    rest.remove_prefix(std::min(rest.size(), text.size() + 1));
    return std::string(text);
}

/// The type STRING means Latin-1, but most programs write UTF-8.
std::string validUTF8(std::string text)
{
    if (g_utf8_validate(text.data(), static_cast<gssize>(text.size()), nullptr))
        return text;
    std::string converted;
    for (char const character : text) {
        auto const byte = static_cast<unsigned char>(character);
        if (byte < 0x80) {
            converted += character;
        } else {
            converted += static_cast<char>(0xC0 | (byte >> 6));
            converted += static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
    return converted;
}

/// What the root window says about the window manager.
struct ManagerAnswers {
    Numbers windows;
    xcb_window_t active = XCB_WINDOW_NONE;
    xcb_window_t checkWindow = XCB_WINDOW_NONE;
    bool supportsHiddenState = false;
};

ManagerAnswers askManager(XConnection& connection)
{
    auto const ask = [&](XAtom property, xcb_atom_t type, std::uint32_t maximumBytes) {
        return connection.request(connection.root(), connection.atom(property), type, maximumBytes);
    };
    auto const windows = ask(XAtom::netClientList, XCB_ATOM_WINDOW, maximumListBytes);
    auto const active = ask(XAtom::netActiveWindow, XCB_ATOM_WINDOW, 4);
    auto const checkWindow = ask(XAtom::netSupportingWMCheck, XCB_ATOM_WINDOW, 4);
    auto const supported = ask(XAtom::netSupported, XCB_ATOM_ATOM, maximumSupportedBytes);

    ManagerAnswers answers;
    answers.windows = connection.collectNumbers(windows);
    answers.active = firstOrNone(connection.collectNumbers(active));
    answers.checkWindow = firstOrNone(connection.collectNumbers(checkWindow));
    answers.supportsHiddenState
        = contains(connection.collectNumbers(supported), connection.atom(XAtom::netWMStateHidden));
    return answers;
}

/// The properties of one window, asked for and on their way.
struct WindowQuestion {
    xcb_window_t id = XCB_WINDOW_NONE;
    XConnection::Request wmClass;
    XConnection::Request gtkApplicationID;
    XConnection::Request pid;
    XConnection::Request machine;
    XConnection::Request netState;
    XConnection::Request type;
    /// Asked only where the hidden state does not say whether a window is minimised.
    std::optional<XConnection::Request> wmState;
};

WindowQuestion askWindow(XConnection& connection, xcb_window_t id, bool supportsHiddenState)
{
    auto const ask = [&](xcb_atom_t property, xcb_atom_t type, std::uint32_t maximumBytes) {
        return connection.request(id, property, type, maximumBytes);
    };
    auto const atom = [&](XAtom name) { return connection.atom(name); };
    return {
        .id = id,
        .wmClass = ask(XCB_ATOM_WM_CLASS, anyType, maximumTextBytes),
        .gtkApplicationID = ask(atom(XAtom::gtkApplicationID), anyType, maximumTextBytes),
        .pid = ask(atom(XAtom::netWMPID), XCB_ATOM_CARDINAL, 4),
        .machine = ask(XCB_ATOM_WM_CLIENT_MACHINE, anyType, maximumTextBytes),
        .netState = ask(atom(XAtom::netWMState), XCB_ATOM_ATOM, maximumAtomsBytes),
        .type = ask(atom(XAtom::netWMWindowType), XCB_ATOM_ATOM, maximumAtomsBytes),
        .wmState
        = supportsHiddenState ? std::nullopt : std::optional(ask(atom(XAtom::wmState), atom(XAtom::wmState), 4)),
    };
}

/// Panels, desktops and the like have no place in a taskbar even where they do not say so. The first type that is
/// known counts.
bool isTypeWithoutTaskbarEntry(XConnection const& connection, Numbers const& types)
{
    static constexpr std::array shown { XAtom::netWMWindowTypeNormal, XAtom::netWMWindowTypeDialog };
    static constexpr std::array notShown { XAtom::netWMWindowTypeDesktop, XAtom::netWMWindowTypeDock,
        XAtom::netWMWindowTypeMenu, XAtom::netWMWindowTypeNotification, XAtom::netWMWindowTypeSplash,
        XAtom::netWMWindowTypeToolbar, XAtom::netWMWindowTypeUtility };
    for (auto const type : types) {
        auto const isType = [&](XAtom name) { return connection.atom(name) == type; };
        if (std::any_of(shown.begin(), shown.end(), isType))
            return false;
        if (std::any_of(notShown.begin(), notShown.end(), isType))
            return true;
    }
    return false;
}

bool isThisMachine(std::string const& machine)
{
    char name[HOST_NAME_MAX + 1] = {};
    return machine.empty() || machine == "localhost" || gethostname(name, HOST_NAME_MAX) != 0 || machine == name;
}

std::optional<ClientWindow> collectWindow(XConnection& connection, WindowQuestion const& question)
{
    auto const wmClass = connection.collectText(question.wmClass);
    auto const gtkApplicationID = connection.collectText(question.gtkApplicationID).value_or(std::string());
    auto const pid = firstOrNone(connection.collectNumbers(question.pid));
    auto const machine = connection.collectText(question.machine).value_or(std::string());
    auto const netState = connection.collectNumbers(question.netState);
    auto const types = connection.collectNumbers(question.type);
    auto const wmState = question.wmState ? firstOrNone(connection.collectNumbers(*question.wmState)) : 0;
    if (!wmClass)
        return std::nullopt;

    ClientWindow window;
    window.id = question.id;
    std::string_view rest = *wmClass;
    window.instanceName = validUTF8(takeText(rest));
    window.className = validUTF8(takeText(rest));
    rest = gtkApplicationID;
    window.gtkApplicationID = validUTF8(takeText(rest));
    if (pid > 0 && pid <= INT_MAX)
        window.pid = static_cast<pid_t>(pid);
    rest = machine;
    window.isLocal = isThisMachine(takeText(rest));
    window.skipsTaskbar = contains(netState, connection.atom(XAtom::netWMStateSkipTaskbar))
        || isTypeWithoutTaskbarEntry(connection, types);
    // A window on another desktop may be iconic without being minimised; the state of its own tells them apart.
    window.isMinimised
        = question.wmState ? wmState == iconicState : contains(netState, connection.atom(XAtom::netWMStateHidden));
    return window;
}

}

ClientWindows readClientWindows(XConnection& connection, std::function<void()> const& meanwhile)
{
    auto manager = askManager(connection);
    if (manager.active != XCB_WINDOW_NONE && !contains(manager.windows, manager.active))
        manager.windows.push_back(manager.active);

    auto const check
        = connection.request(manager.checkWindow, connection.atom(XAtom::netSupportingWMCheck), XCB_ATOM_WINDOW, 4);
    std::vector<WindowQuestion> questions;
    questions.reserve(manager.windows.size());
    for (auto const id : manager.windows)
        questions.push_back(askWindow(connection, id, manager.supportsHiddenState));
    if (meanwhile) {
        connection.sendRequests();
        meanwhile();
    }

    ClientWindows result;
    result.active = manager.active;
    // A window manager that crashed leaves its last words on the root window, but not the window it names there.
    bool const managerRuns = firstOrNone(connection.collectNumbers(check)) == manager.checkWindow;
    for (auto const& question : questions) {
        if (auto window = collectWindow(connection, question))
            result.windows.push_back(std::move(*window));
    }
    connection.noticeQueuedEvents();
    return managerRuns ? std::move(result) : ClientWindows {};
}

std::optional<ClientWindow> readActiveWindow(XConnection& connection)
{
    auto const manager = askManager(connection);
    std::optional<ClientWindow> window;
    if (manager.active != XCB_WINDOW_NONE)
        window = collectWindow(connection, askWindow(connection, manager.active, manager.supportsHiddenState));
    connection.noticeQueuedEvents();
    return window;
}

}
