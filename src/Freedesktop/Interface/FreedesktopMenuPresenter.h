#pragma once

#include "Freedesktop/Interface/MenuTracking.h"
#include "Platform/MenuPresenter.h"

namespace marrowick {

class FreedesktopEvents;

/// Shows menus as the toolkit's, which the keyboard, the mouse and accessibility clients reach.
class FreedesktopMenuPresenter : public MenuPresenter {
public:
    /// While `gate` is closed no chosen action runs.
    FreedesktopMenuPresenter(FreedesktopEvents& events, std::shared_ptr<DeliveryGate> gate);

    void popUp(std::shared_ptr<Menu> menu, StatusItem* item) override;
    void cancelTracking() override;

private:
    MenuTracking tracking_;
};

}
