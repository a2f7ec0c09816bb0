#pragma once

#include "Freedesktop/DeliveryGate.h"
#include "Freedesktop/Files/FileDescriptor.h"
#include "Platform/FileURL.h"

#include <QObject>
#include <QPointer>
#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace marrowick {

/// Watches one directory by the kernel's inotify, for as long as it and its dispatch live. Main thread only.
class DirectoryWatch : public std::enable_shared_from_this<DirectoryWatch> {
public:
    using Handler = std::function<void()>;

    /// Where deliveries go: through the gate, and nowhere once `dispatch` is gone.
    struct Target {
        std::shared_ptr<DeliveryGate> gate;
        QPointer<QObject> dispatch;
    };

    /// Null where the directory cannot be watched. What the handlers are for says `Dispatch::directoryWatch`.
    static std::shared_ptr<DirectoryWatch> make(Target target, FileURL const& url, Handler changed, Handler ended);

    DirectoryWatch(Target target, FileDescriptor queue, Handler changed, Handler ended);

private:
    /// What a reading of the whole queue found.
    struct Events {
        bool haveChanged = false;
        bool haveEnded = false;
    };

    Events drain();
    void queueIsReadable();
    void deliver();

    Target target_;
    FileDescriptor queue_;
    Handler changed_;
    Handler ended_;
    QSocketNotifier notifier_;
    /// Found and not delivered so far.
    Events waiting_;
    bool isDeliveryQueued_ = false;
};

}
