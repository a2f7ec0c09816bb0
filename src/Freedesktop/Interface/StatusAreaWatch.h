#pragma once

#include "Freedesktop/Interface/NotifierHostWatch.h"
#include "Freedesktop/Interface/TrayManagerWatch.h"

#include <cstdint>
#include <functional>

namespace marrowick {

/// A place for status icons.
struct StatusArea {
    enum class Kind : std::uint8_t {
        none,
        /// An `org.kde.StatusNotifierHost` draws the icons and reports clicks over the session bus.
        statusNotifier,
        /// `manager` embeds windows of other programs.
        embedding,
    };
    Kind kind = Kind::none;
    xcb_window_t manager = XCB_WINDOW_NONE;
    friend bool operator==(StatusArea const&, StatusArea const&) = default;
};

/// Follows the status areas of the desktop as they come and go. Of two kinds at once, as of a panel that offers both, a
/// StatusNotifier host is the better one: it draws at the panel's own size and scale.
class StatusAreaWatch {
public:
    /// `changed` is called from the event loop when `area` answers otherwise than before.
    explicit StatusAreaWatch(std::function<void(StatusArea)> changed);

    /// Absent until it is known.
    std::optional<StatusArea> area() const;

private:
    void update();

    std::function<void(StatusArea)> changed_;
    std::optional<StatusArea> reported_;
    NotifierHostWatch notifierHosts_;
    TrayManagerWatch trayManagers_;
};

}
