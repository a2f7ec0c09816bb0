#pragma once

#include <atomic>
#include <chrono>

namespace marrowick {

/// Says when work in the background has become vain: nobody wants its result, or it has taken too long. Any thread.
class LoadLimit {
public:
    explicit LoadLimit(std::chrono::milliseconds time)
        : end_(std::chrono::steady_clock::now() + time)
    {
    }
    LoadLimit(LoadLimit const&) = delete;
    LoadLimit& operator=(LoadLimit const&) = delete;

    void cancel() { isCancelled_ = true; }
    bool isReached() const { return isCancelled_ || std::chrono::steady_clock::now() >= end_; }

private:
    std::atomic<bool> isCancelled_ = false;
    std::chrono::steady_clock::time_point end_;
};

}
