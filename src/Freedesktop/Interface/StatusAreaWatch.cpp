#include "Freedesktop/Interface/StatusAreaWatch.h"

#include <utility>

namespace marrowick {

StatusAreaWatch::StatusAreaWatch(std::function<void(StatusArea)> changed)
    : changed_(std::move(changed))
    , notifierHosts_([this] { update(); })
    , trayManagers_([this] { update(); })
{
    reported_ = area();
}

std::optional<StatusArea> StatusAreaWatch::area() const
{
    auto const hasHost = notifierHosts_.isHostRegistered();
    if (!hasHost)
        return std::nullopt;
    if (*hasHost)
        return StatusArea { StatusArea::Kind::statusNotifier, XCB_WINDOW_NONE };
    if (trayManagers_.manager() != XCB_WINDOW_NONE)
        return StatusArea { StatusArea::Kind::embedding, trayManagers_.manager() };
    return StatusArea {};
}

void StatusAreaWatch::update()
{
    auto const present = area();
    if (present == reported_)
        return;
    reported_ = present;
    if (present)
        changed_(*present);
}

}
