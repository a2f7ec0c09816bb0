#include "Freedesktop/Interface/FreedesktopStatusBar.h"

#include "Freedesktop/Interface/FreedesktopStatusItem.h"

#include <utility>

namespace marrowick {

FreedesktopStatusBar::FreedesktopStatusBar(FreedesktopEvents& events, std::shared_ptr<DeliveryGate> gate, Log& log)
    : events_(events)
    , gate_(std::move(gate))
    , log_(log)
{
}

std::unique_ptr<StatusItem> FreedesktopStatusBar::makeStatusItem(double)
{
    return std::make_unique<FreedesktopStatusItem>(events_, gate_, log_);
}

}
