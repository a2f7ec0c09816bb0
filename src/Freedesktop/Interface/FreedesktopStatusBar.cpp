#include "Freedesktop/Interface/FreedesktopStatusBar.h"

#include "Freedesktop/Interface/FreedesktopStatusItem.h"

namespace marrowick {

FreedesktopStatusBar::FreedesktopStatusBar(FreedesktopEvents& events, Log& log)
    : events_(events)
    , log_(log)
{
}

std::unique_ptr<StatusItem> FreedesktopStatusBar::makeStatusItem(double)
{
    return std::make_unique<FreedesktopStatusItem>(events_, log_);
}

}
