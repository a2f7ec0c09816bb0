#include "Freedesktop/Interface/TaskbarEntry.h"

#include "Freedesktop/Interface/XcbHandles.h"

#include <QWidget>

#include <array>

namespace marrowick {

void leaveOutOfTaskbars(QWidget& window)
{
    auto* const connection = xcbConnection();
    if (!connection)
        return;
    // Most panels list tool windows unless they say that they do not want it. The toolkit keeps what it finds here when
    // it adds states of its own. What an earlier showing has left, where no window manager took it away, is replaced.
    static std::array const states { xcbAtom("_NET_WM_STATE_SKIP_TASKBAR"), xcbAtom("_NET_WM_STATE_SKIP_PAGER") };
    static auto const property = xcbAtom("_NET_WM_STATE");
    constexpr std::uint8_t bitsOfAtom = 32;
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window.winId()), property,
        XCB_ATOM_ATOM, bitsOfAtom, static_cast<std::uint32_t>(states.size()), states.data());
}

}
