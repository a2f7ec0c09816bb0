#pragma once

#include <QObject>

#include <deque>
#include <functional>
#include <vector>

namespace marrowick {

/// Stands between what the desktop tells the program and the program, and is closed while an alert waits for its answer:
/// the core then hears nothing else. Main thread only.
class DeliveryGate {
public:
    /// Keeps a gate closed for its own lifetime. Closures nest.
    class Closure {
    public:
        /// `showReason` brings what keeps the gate closed before the user.
        explicit Closure(DeliveryGate& gate, std::function<void()> showReason = {});
        ~Closure();
        Closure(Closure const&) = delete;
        Closure& operator=(Closure const&) = delete;

    private:
        friend class DeliveryGate;

        DeliveryGate& gate_;
        std::function<void()> showReason_;
    };

    DeliveryGate() = default;
    DeliveryGate(DeliveryGate const&) = delete;
    DeliveryGate& operator=(DeliveryGate const&) = delete;

    bool isClosed() const { return !closures_.empty(); }

    /// Runs `delivery` at once where nothing holds it back. Otherwise it waits: it runs from the event loop after the
    /// outermost closure has ended, after what came before it.
    void deliver(std::function<void()> delivery);

    /// For what the user asks of the program, which is not kept for later. Where the gate is closed, shows the reason
    /// of its latest closure and answers true: nothing is to be done.
    bool turnsUserAway() const;

private:
    void deliverWaiting();
    void queueWaiting();

    /// Queued calls end with it.
    QObject context_;
    std::deque<std::function<void()>> waiting_;
    std::vector<Closure*> closures_;
};

}
