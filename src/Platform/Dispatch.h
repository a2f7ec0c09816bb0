#pragma once

#include "Platform/FileURL.h"
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

    /// Runs `handler` on the main thread after entries were added to a directory, removed or renamed: once for all that
    /// happened until then. Changes of files and below subdirectories do not count. When the directory itself is removed
    /// or renamed, `ended` runs instead, and nothing more arrives. Empty where the directory cannot be watched. Main
    /// thread only.
    virtual Subscription directoryWatch(FileURL const& url, std::function<void()> handler, std::function<void()> ended)
        = 0;

    /// Runs `handler` on the main thread every `interval`, the first time after one. Main thread only.
    virtual Subscription repeatingTimer(std::chrono::milliseconds interval, std::function<void()> handler) = 0;
};

}
