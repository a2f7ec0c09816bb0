#pragma once

#include "Platform/RunningApplication.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace marrowick {

/// An application whose answers are the fields.
class FakeRunningApplication final : public RunningApplication {
public:
    static std::shared_ptr<FakeRunningApplication> make(std::optional<std::string> identifier, bool active = false)
    {
        auto application = std::make_shared<FakeRunningApplication>();
        application->identifier = std::move(identifier);
        application->active = active;
        return application;
    }

    std::optional<std::string> bundleIdentifier() const override { return identifier; }
    std::optional<std::string> localizedName() const override { return name; }
    std::optional<FileURL> bundleURL() const override { return bundle; }
    ActivationPolicy activationPolicy() const override { return policy; }
    bool isActive() const override { return active; }
    bool isHidden() const override { return hidden; }
    Image icon() const override { return picture; }
    void activate(ActivationOptions options) override { activations.push_back(options); }
    void terminate() override { ++terminations; }
    void forceTerminate() override { ++forcedTerminations; }

    std::optional<std::string> identifier;
    std::optional<std::string> name;
    std::optional<FileURL> bundle;
    ActivationPolicy policy = ActivationPolicy::regular;
    bool active = false;
    bool hidden = false;
    Image picture = Image::systemSymbol("app");
    std::vector<ActivationOptions> activations;
    int terminations = 0;
    int forcedTerminations = 0;
};

}
