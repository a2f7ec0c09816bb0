#pragma once

#include <glib.h>

#include <chrono>
#include <functional>

namespace marrowick {

/// A place for events apart from the program's event loop: what is attached here is served only while somebody waits
/// here, and nothing else is served meanwhile.
class PrivateContext {
public:
    using Clock = std::chrono::steady_clock;

    PrivateContext();
    ~PrivateContext();
    PrivateContext(PrivateContext const&) = delete;
    PrivateContext& operator=(PrivateContext const&) = delete;

    GMainContext* get() const { return context_; }

    /// Serves what has come in so far, without waiting for more.
    void serveArrived();

    /// Serves until `condition` holds; false when the deadline passes before.
    bool serveUntil(std::function<bool()> const& condition, Clock::time_point deadline);

private:
    GMainContext* context_;
};

}
