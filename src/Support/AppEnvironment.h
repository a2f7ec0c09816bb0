#pragma once

#include "Platform/RunningApplication.h"
#include "Platform/Subscription.h"

#include <memory>

namespace marrowick {

/// Remembers the application that the user worked in before this program came to the front. Main thread only.
class AppEnvironment {
public:
    static AppEnvironment& shared();

    /// Begins with the application that is active already, unless that is this program.
    AppEnvironment();

    /// The last application other than this program that became active, also when it has quit since; null when none is
    /// known.
    std::shared_ptr<RunningApplication> const& lastFrontmostOtherApp() const { return lastFrontmostOtherApp_; }

private:
    void appActivated(std::shared_ptr<RunningApplication> const& application);

    std::shared_ptr<RunningApplication> lastFrontmostOtherApp_;
    Subscription activations_;
};

}
