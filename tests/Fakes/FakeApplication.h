#pragma once

#include "Fakes/FakeDispatch.h"
#include "Fakes/FakeEvents.h"
#include "Platform/Application.h"

#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace marrowick {

/// This program as the desktop sees it, without an event loop.
class FakeApplication final : public Application {
public:
    FakeApplication(FakeEvents& events, FakeDispatch& dispatch)
        : events_(events)
        , dispatch_(dispatch)
    {
    }

    std::optional<std::string> bundleIdentifier() const override { return identifier; }
    bool claimSingleInstance() override { return true; }
    void setReopenHandler(std::function<void()> handler) override { reopenHandler_ = std::move(handler); }
    void setAccessoryActivationPolicy() override { isAccessory = true; }
    void activate() override { ++activations; }
    void run(std::function<void()> didFinishLaunching) override { didFinishLaunching(); }
    void terminate() override { ++terminations; }
    bool isTerminating() const override { return terminations > 0; }

    /// Another start of the program asks this one to show itself; nothing comes of it while an alert is up.
    void startAgain()
    {
        if (reopenHandler_ && !dispatch_.isHeld())
            events_.during(Event { EventType::applicationDefined, {} }, reopenHandler_);
    }

    std::optional<std::string> identifier = "org.marrowick.Marrowick";
    bool isAccessory = false;
    int activations = 0;
    int terminations = 0;

private:
    FakeEvents& events_;
    FakeDispatch& dispatch_;
    std::function<void()> reopenHandler_;
};

}
