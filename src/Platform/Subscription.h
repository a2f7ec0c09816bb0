#pragma once

#include <functional>
#include <utility>

namespace marrowick {

/// Keeps an observer, a watch or a timer going. After its end, by `end()` or by destruction, nothing more arrives; it
/// may end inside its own handler. An empty one stands for "nothing could be had".
class [[nodiscard]] Subscription {
public:
    Subscription() = default;
    explicit Subscription(std::function<void()> onEnd)
        : onEnd_(std::move(onEnd))
    {
    }
    Subscription(Subscription&& other) noexcept
        : onEnd_(std::exchange(other.onEnd_, nullptr))
    {
    }
    Subscription& operator=(Subscription&& other) noexcept
    {
        if (this != &other) {
            end();
            onEnd_ = std::exchange(other.onEnd_, nullptr);
        }
        return *this;
    }
    ~Subscription() { end(); }

    bool isActive() const { return static_cast<bool>(onEnd_); }

    void end()
    {
        if (auto onEnd = std::exchange(onEnd_, nullptr))
            onEnd();
    }

private:
    std::function<void()> onEnd_;
};

}
