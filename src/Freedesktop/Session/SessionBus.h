#pragma once

#include "Freedesktop/GLibOwners.h"

#include <functional>
#include <memory>
#include <string>

namespace marrowick {

/// A method call to another program.
struct BusCall {
    std::string destination;
    std::string path;
    std::string interface;
    std::string method;
    /// A floating or owned reference to the tuple of arguments; null for none. The call takes it.
    GVariant* arguments = nullptr;
    int timeoutMilliseconds = -1;
};

/// The user's session bus. Nothing here waits: answers come from the event loop, and none comes after the end of the
/// object. Main thread only.
class SessionBus {
public:
    /// The answers come from `context`, which must outlive the object; null stands for the program's event loop.
    explicit SessionBus(GMainContext* context = nullptr);
    ~SessionBus();
    SessionBus(SessionBus const&) = delete;
    SessionBus& operator=(SessionBus const&) = delete;

    /// Whether the session has a bus. One is never started for the purpose.
    static bool isAvailable();

    /// Where the call failed the answer is null.
    using Done = std::function<void(GVariant* answer, GError const* error)>;

    /// Calls `done` once, later. Calls reach the bus in the order in which they are made.
    void call(BusCall call, Done done);

private:
    struct State;
    struct PendingCall;

    std::shared_ptr<State> state_;
};

}
