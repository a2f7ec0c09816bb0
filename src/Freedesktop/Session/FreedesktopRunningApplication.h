#pragma once

#include "Freedesktop/Session/ApplicationFacts.h"
#include "Freedesktop/Session/ApplicationTermination.h"

#include <memory>
#include <utility>

namespace marrowick {

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
    void terminate() override { askToTerminate(facts_, *connection_); }
    void forceTerminate() override { forceTermination(facts_, *connection_); }

private:
    ApplicationFacts facts_;
    std::shared_ptr<XConnection> connection_;
};

}
