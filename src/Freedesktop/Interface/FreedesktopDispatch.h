#pragma once

#include "Freedesktop/DeliveryGate.h"
#include "Platform/Dispatch.h"

#include <QObject>
#include <QThreadPool>

#include <memory>

namespace marrowick {

/// Qt's event loop as the main thread's queue, and threads of low priority beside it.
///
/// Its end waits for background tasks that run; those that have not begun, and what was posted to the main thread, are
/// dropped.
class FreedesktopDispatch : public Dispatch {
public:
    /// Made on the main thread, after the application. Posted work, timers and watches come through `gate`; a timer that
    /// fires several times while it is closed comes once, and so does a watched folder that changes.
    explicit FreedesktopDispatch(std::shared_ptr<DeliveryGate> gate);
    ~FreedesktopDispatch() override;

    bool isMainThread() const override;
    void onMainThread(std::function<void()> work) override;
    void inBackground(std::function<void()> work) override;
    Subscription directoryWatch(
        FileURL const& url, std::function<void()> handler, std::function<void()> ended) override;
    Subscription repeatingTimer(std::chrono::milliseconds interval, std::function<void()> handler) override;

private:
    void deliver(std::function<void()> work);

    std::shared_ptr<DeliveryGate> gate_;
    QObject mainThread_;
    QThreadPool background_;
};

}
