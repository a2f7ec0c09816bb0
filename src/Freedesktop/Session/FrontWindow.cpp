#include "Freedesktop/Session/FrontWindow.h"

#include <algorithm>
#include <set>
#include <utility>

namespace marrowick {

namespace {

using Numbers = std::vector<std::uint32_t>;

constexpr std::uint32_t maximumListBytes = 65'536 * 4;
constexpr std::uint32_t maximumAtomsBytes = 1024 * 4;
constexpr std::uint32_t iconicState = 3;
constexpr std::uint32_t allWorkspaces = 0xFFFF'FFFF;

bool contains(Numbers const& numbers, std::uint32_t number)
{
    return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

/// The properties of one window, asked for and on their way.
struct WindowQuestion {
    xcb_window_t id = XCB_WINDOW_NONE;
    XConnection::Request type;
    XConnection::Request netState;
    XConnection::Request state;
    XConnection::Request workspace;
};

struct Manager {
    Numbers stacking;
    Numbers workspace;
    bool supportsHiddenState = false;
};

Manager askManager(XConnection& connection)
{
    auto const ask = [&](XAtom property, xcb_atom_t type, std::uint32_t maximumBytes) {
        return connection.request(connection.root(), connection.atom(property), type, maximumBytes);
    };
    auto const stacking = ask(XAtom::netClientListStacking, XCB_ATOM_WINDOW, maximumListBytes);
    auto const workspace = ask(XAtom::netCurrentDesktop, XCB_ATOM_CARDINAL, 4);
    auto const supported = ask(XAtom::netSupported, XCB_ATOM_ATOM, maximumAtomsBytes);
    return {
        .stacking = connection.collectNumbers(stacking),
        .workspace = connection.collectNumbers(workspace),
        .supportsHiddenState = contains(connection.collectNumbers(supported), connection.atom(XAtom::netWMStateHidden)),
    };
}

WindowQuestion askWindow(XConnection& connection, xcb_window_t id)
{
    auto const ask = [&](XAtom property, xcb_atom_t type, std::uint32_t maximumBytes) {
        return connection.request(id, connection.atom(property), type, maximumBytes);
    };
    return {
        .id = id,
        .type = ask(XAtom::netWMWindowType, XCB_ATOM_ATOM, maximumAtomsBytes),
        .netState = ask(XAtom::netWMState, XCB_ATOM_ATOM, maximumAtomsBytes),
        .state = ask(XAtom::wmState, connection.atom(XAtom::wmState), 4),
        .workspace = ask(XAtom::netWMDesktop, XCB_ATOM_CARDINAL, 4),
    };
}

StackedWindow collectWindow(XConnection& connection, WindowQuestion const& question, Manager const& manager)
{
    auto const types = connection.collectNumbers(question.type);
    auto const netState = connection.collectNumbers(question.netState);
    auto const state = connection.collectNumbers(question.state);
    auto const workspace = connection.collectNumbers(question.workspace);

    // A window on another workspace may be iconic without being minimised; the state of its own tells them apart.
    bool const isMinimised = manager.supportsHiddenState ? contains(netState, connection.atom(XAtom::netWMStateHidden))
                                                         : !state.empty() && state.front() == iconicState;
    bool const isElsewhere = !workspace.empty() && !manager.workspace.empty() && workspace != manager.workspace
        && workspace.front() != allWorkspaces;
    auto visibility = WindowVisibility::visible;
    if (isMinimised)
        visibility = WindowVisibility::minimised;
    else if (contains(types, connection.atom(XAtom::netWMWindowTypeDesktop)))
        visibility = WindowVisibility::desktop;
    else if (isElsewhere)
        visibility = WindowVisibility::onOtherWorkspace;
    return { question.id, visibility };
}

/// Greater for what is further in front. Windows that the window manager does not know, as all are on a desktop without
/// X windows, stand between those that are shown and the desktop.
std::pair<int, std::size_t> rank(FileManagerWindow const& window, std::vector<StackedWindow> const& stacking)
{
    auto const known = std::find_if(
        stacking.begin(), stacking.end(), [&](StackedWindow const& stacked) { return stacked.id == window.id; });
    if (known == stacking.end())
        return { 2, window.isActive ? 1 : 0 };
    auto const height = static_cast<std::size_t>(known - stacking.begin());
    switch (known->visibility) {
    case WindowVisibility::minimised:
        return { 0, height };
    case WindowVisibility::desktop:
        return { 1, height };
    case WindowVisibility::onOtherWorkspace:
        return { 3, height };
    case WindowVisibility::visible:
        return { 4, height };
    }
    return {};
}

}

std::vector<StackedWindow> readStacking(XConnection& connection, FileManagerWindows const& windows)
{
    std::set<xcb_window_t> ids;
    for (auto const& window : windows)
        ids.insert(window.id);
    auto const manager = askManager(connection);
    std::vector<WindowQuestion> questions;
    for (auto const id : manager.stacking) {
        if (id != XCB_WINDOW_NONE && ids.contains(id))
            questions.push_back(askWindow(connection, id));
    }
    std::vector<StackedWindow> stacking;
    stacking.reserve(questions.size());
    for (auto const& question : questions)
        stacking.push_back(collectWindow(connection, question, manager));
    connection.noticeQueuedEvents();
    return stacking;
}

FileManagerWindow const* frontWindow(FileManagerWindows const& windows, std::vector<StackedWindow> const& stacking)
{
    FileManagerWindow const* front = nullptr;
    std::pair<int, std::size_t> frontRank;
    for (auto const& window : windows) {
        auto const windowRank = rank(window, stacking);
        if (!front || windowRank > frontRank) {
            front = &window;
            frontRank = windowRank;
        }
    }
    return front;
}

}
