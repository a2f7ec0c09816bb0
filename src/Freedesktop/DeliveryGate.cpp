#include "Freedesktop/DeliveryGate.h"

#include <utility>

namespace marrowick {

DeliveryGate::Closure::Closure(DeliveryGate& gate, std::function<void()> showReason)
    : gate_(gate)
    , showReason_(std::move(showReason))
{
    gate_.closures_.push_back(this);
}

DeliveryGate::Closure::~Closure()
{
    std::erase(gate_.closures_, this);
    if (!gate_.isClosed() && !gate_.waiting_.empty())
        gate_.queueWaiting();
}

void DeliveryGate::deliver(std::function<void()> delivery)
{
    if (!isClosed() && waiting_.empty()) {
        delivery();
        return;
    }
    waiting_.push_back(std::move(delivery));
}

bool DeliveryGate::turnsUserAway() const
{
    if (!isClosed())
        return false;
    if (auto const& showReason = closures_.back()->showReason_)
        showReason();
    return true;
}

void DeliveryGate::queueWaiting()
{
    QMetaObject::invokeMethod(
        &context_, [this] { deliverWaiting(); }, Qt::QueuedConnection);
}

void DeliveryGate::deliverWaiting()
{
    // A delivery may bring up an alert of its own, after which the rest has its turn again.
    while (!isClosed() && !waiting_.empty()) {
        auto const delivery = std::move(waiting_.front());
        waiting_.pop_front();
        delivery();
    }
}

}
