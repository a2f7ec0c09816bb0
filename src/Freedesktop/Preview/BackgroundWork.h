#pragma once

#include "Freedesktop/DeliveryGate.h"

#include <QObject>
#include <QThreadPool>

#include <functional>
#include <memory>

namespace marrowick {

/// Does work beside the main thread and brings what comes of it back. Main thread only.
class BackgroundWork {
public:
    /// What is to be done with a result, on the main thread.
    using Delivery = std::function<void()>;

    /// Deliveries come through `gate`.
    explicit BackgroundWork(std::shared_ptr<DeliveryGate> gate);

    /// Nothing is delivered afterwards. Waits for work that runs, but only for a while: a library that never returns from a
    /// hostile file is left to itself.
    ~BackgroundWork();
    BackgroundWork(BackgroundWork const&) = delete;
    BackgroundWork& operator=(BackgroundWork const&) = delete;

    void run(std::function<Delivery()> work);

private:
    struct Mailbox;

    std::shared_ptr<DeliveryGate> gate_;
    /// Posted deliveries end with it.
    QObject receiver_;
    std::shared_ptr<Mailbox> mailbox_;
    std::unique_ptr<QThreadPool> threads_;
};

}
