#pragma once

#include "Platform/Subscription.h"

#include <chrono>
#include <functional>

namespace marrowick {

/// Where and when code runs.
class Dispatch {
public:
    virtual ~Dispatch() = default;

    /// Any thread.
    virtual bool isMainThread() const = 0;

    /// Runs `work` on the main thread, later, after what was posted before it. Any thread.
    virtual void onMainThread(std::function<void()> work) = 0;

    /// Runs `work` on another thread at low priority. `work` carries what it needs and never asks for the installed
    /// services. Main thread only.
    virtual void inBackground(std::function<void()> work) = 0;

    /// Runs `handler` on the main thread every `interval`, the first time after one. Main thread only.
    virtual Subscription repeatingTimer(std::chrono::milliseconds interval, std::function<void()> handler) = 0;
};

}
