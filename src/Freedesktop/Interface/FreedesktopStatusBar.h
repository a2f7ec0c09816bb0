#pragma once

#include "Freedesktop/DeliveryGate.h"
#include "Platform/Log.h"
#include "Platform/StatusItem.h"

#include <memory>

namespace marrowick {

class FreedesktopEvents;

/// The status areas of Linux desktops: those that embed windows on X11, and StatusNotifier hosts.
class FreedesktopStatusBar : public StatusBar {
public:
    FreedesktopStatusBar(FreedesktopEvents& events, std::shared_ptr<DeliveryGate> gate, Log& log);

    /// `length` is not used: every host gives its icons their size.
    std::unique_ptr<StatusItem> makeStatusItem(double length) override;

private:
    FreedesktopEvents& events_;
    std::shared_ptr<DeliveryGate> gate_;
    Log& log_;
};

}
