#pragma once

#include "Freedesktop/DeliveryGate.h"
#include "Platform/Alerts.h"

#include <memory>

namespace marrowick {

/// Alerts as windows of the toolkit, which the keyboard, the mouse and accessibility clients reach.
///
/// Where the program is asked to end while an alert is up, the alert goes, and its answer is the last button; so is that
/// of every alert from then on, which is not shown.
class FreedesktopAlerts : public Alerts {
public:
    /// `gate` is closed while an alert is up.
    explicit FreedesktopAlerts(std::shared_ptr<DeliveryGate> gate);

    std::size_t runModal(Alert const& alert) override;
    void runModal(Error const& error) override;

private:
    std::shared_ptr<DeliveryGate> gate_;
};

}
