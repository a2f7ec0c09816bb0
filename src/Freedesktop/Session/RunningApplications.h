#pragma once

#include "Freedesktop/DeliveryGate.h"
#include "Freedesktop/Session/ApplicationList.h"
#include "Platform/Subscription.h"
#include "Platform/Workspace.h"

#include <functional>
#include <memory>
#include <vector>

namespace marrowick {

/// The applications that run, and which of them the user turns to.
class RunningApplications {
public:
    using ActivationHandler = std::function<void(std::shared_ptr<RunningApplication>)>;

    /// Observers hear through `gate`. `entries` is refreshed by every question.
    RunningApplications(std::shared_ptr<XConnection> connection, std::shared_ptr<DeliveryGate> gate,
        DesktopEntries& entries, std::string ownIdentifier);
    ~RunningApplications();
    RunningApplications(RunningApplications const&) = delete;
    RunningApplications& operator=(RunningApplications const&) = delete;

    std::vector<std::shared_ptr<RunningApplication>> list(BackgroundOnly backgroundOnly);

    /// Calls `handler` when another application than the last one becomes the active one. No window being active and
    /// this program's own windows do not count.
    Subscription observeActivation(ActivationHandler handler);

private:
    struct Observers;

    std::vector<ApplicationFacts> read();
    void activeWindowChanged();

    std::shared_ptr<XConnection> connection_;
    std::shared_ptr<DeliveryGate> gate_;
    DesktopEntries& entries_;
    ApplicationRules rules_;
    std::string lastActive_;
    std::shared_ptr<Observers> observers_;
};

}
