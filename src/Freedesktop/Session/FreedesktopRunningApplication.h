#pragma once

#include "Platform/RunningApplication.h"

#include <utility>

namespace marrowick {

/// What was known of an application when the windows were last looked at.
struct ApplicationFacts {
    /// Tells applications apart; never shown.
    std::string key;
    std::optional<std::string> identifier;
    std::optional<std::string> name;
    std::optional<FileURL> bundleURL;
    ActivationPolicy policy = ActivationPolicy::regular;
    bool isActive = false;
    bool isHidden = false;
};

class FreedesktopRunningApplication : public RunningApplication {
public:
    explicit FreedesktopRunningApplication(ApplicationFacts facts)
        : facts_(std::move(facts))
    {
    }

    std::optional<std::string> bundleIdentifier() const override { return facts_.identifier; }
    std::optional<std::string> localizedName() const override { return facts_.name; }
    std::optional<FileURL> bundleURL() const override { return facts_.bundleURL; }
    ActivationPolicy activationPolicy() const override { return facts_.policy; }
    bool isActive() const override { return facts_.isActive; }
    bool isHidden() const override { return facts_.isHidden; }

private:
    ApplicationFacts facts_;
};

}
