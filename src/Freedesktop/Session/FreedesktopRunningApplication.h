#pragma once

#include "Freedesktop/Session/ApplicationFacts.h"

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace marrowick {

/// Asks the server once for the icons that the windows of all `applications` bring along, where those are not installed.
/// `meanwhile` is done while it answers.
void lookAtIcons(
    std::vector<ApplicationFacts>& applications, XConnection& connection, std::function<void()> const& meanwhile);

class FreedesktopRunningApplication : public RunningApplication {
public:
    FreedesktopRunningApplication(ApplicationFacts facts, std::shared_ptr<XConnection> connection)
        : facts_(std::move(facts))
        , connection_(std::move(connection))
    {
    }

    std::optional<std::string> bundleIdentifier() const override { return facts_.identifier; }
    std::optional<std::string> localizedName() const override { return facts_.name; }
    std::optional<FileURL> bundleURL() const override { return facts_.bundleURL; }
    ActivationPolicy activationPolicy() const override { return facts_.policy; }
    bool isActive() const override { return facts_.isActive; }
    bool isHidden() const override { return facts_.isHidden; }
    /// Of an application that is not installed the icon is its windows' own; the server is asked where it was not before.
    Image icon() const override;
    void activate(ActivationOptions options) override;
    void terminate() override;
    void forceTerminate() override;

private:
    ApplicationFacts facts_;
    std::shared_ptr<XConnection> connection_;
};

}
